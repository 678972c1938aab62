// Bytes between inaccessible pages.
#pragma once

#include <Kelvar/Types.h>

#include <cstddef>
#include <new>
#include <vector>

#include <sys/mman.h>

namespace Testing {

// `size` bytes that end with their page: an access beyond the end is a fault.
class Guarded {
public:
   explicit Guarded( std::size_t size )
      : size_( size ), inner_( ( size + page - 1 ) / page * page ),
        base_( static_cast<U8*>( mmap( nullptr, inner_ + page, PROT_READ | PROT_WRITE,
                                       MAP_PRIVATE | MAP_ANONYMOUS, -1, 0 ) ) ) {
      if( base_ == MAP_FAILED || mprotect( base_ + inner_, page, PROT_NONE ) != 0 ) {
         throw std::bad_alloc();
      }
   }
   Guarded( const Guarded& ) = delete;
   Guarded& operator=( const Guarded& ) = delete;
   ~Guarded() { munmap( base_, inner_ + page ); }

   std::size_t size() const { return size_; }
   U8* data() { return base_ + inner_ - size_; }
   const U8* data() const { return base_ + inner_ - size_; }
   std::vector<U8> bytes() const { return { data(), data() + size_ }; }

private:
   static constexpr std::size_t page = 4096;

   std::size_t size_;
   std::size_t inner_;
   U8* base_;
};

} // namespace Testing
