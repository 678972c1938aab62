// The run time's string: made from characters and a length, compared, hashed and printed.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>

#define ORU_API __attribute__( ( visibility( "default" ) ) )

namespace Oru {

namespace Impl {

template<class Char>
class StringData;

// The characters of a non-empty string, and their hash.
template<>
class ORU_API StringData<char> {
public:
   // Branches that no test takes: what is undone if the text cannot be copied.
   explicit StringData( std::string_view text ) : text_( text ) {}

   std::string_view view() const { return text_; }

   // A 64-bit hash of the characters.
   std::size_t hash() const;

private:
   std::string text_;
};

} // namespace Impl

// Owns a copy of its characters, which may include zero bytes.
//
// Branches that no test takes: what is undone if the text cannot be copied.
class String {
public:
   String() : data_( std::string_view() ) {}
   String( const char* text, std::size_t length ) : data_( std::string_view( text, length ) ) {}
   // Branches that no test takes: what is undone if the text cannot be copied.
   String( std::string_view text ) : data_( text ) {}
   String( const char* text ) : data_( std::string_view( text ) ) {}
   // Branches that no test takes: what is undone if the text cannot be copied.
   String( const std::string& text ) : data_( std::string_view( text ) ) {}

   std::string_view view() const { return data_.view(); }
   std::size_t size() const { return view().size(); }
   bool empty() const { return view().empty(); }

   // The string's data, null for the empty string.
   const Impl::StringData<char>* data() const { return empty() ? nullptr : &data_; }

private:
   Impl::StringData<char> data_;
};

inline bool operator==( const String& left, const String& right ) {
   return left.view() == right.view();
}
// Inlined even in a chain of a hundred names: most differ in their length, a constant.
__attribute__( ( always_inline ) ) inline bool operator==( const String& left, const char* right ) {
   const std::string_view text = left.view();
   const std::size_t length = __builtin_strlen( right );
   return text.size() == length &&
          ( length == 0 || ( text[0] == right[0] && text == std::string_view( right, length ) ) );
}
inline bool operator!=( const String& left, const String& right ) { return !( left == right ); }
inline bool operator!=( const String& left, const char* right ) { return !( left == right ); }

ORU_API std::ostream& operator<<( std::ostream& out, const String& text );

} // namespace Oru
