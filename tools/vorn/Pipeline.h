// Work on pieces of a stream by several threads, whose results stay in order.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#ifdef __linux__
#include <sched.h>
#endif

namespace Vorn {

// Each job is worked on by one of the threads and then finished by the caller's, in the order in
// which they were given.
//
//    Pipeline<Job> pipeline( work, finish );  // work( job, thread ), finish( job )
//    while( ... ) { Job job = pipeline.spare(); ... pipeline.give( std::move( job ), true ); }
//    pipeline.drain();
template<class Job>
class Pipeline {
public:
   using Work = std::function<void( Job&, std::size_t thread )>;
   using Finish = std::function<void( Job& )>;

   // More threads don't help, as one of them has to read and write everything.
   static constexpr std::size_t mostThreads = 4;

   // `work` must not throw, and may be called by up to mostThreads threads at once.
   Pipeline( Work work, Finish finish )
      : work_( std::move( work ) ), finish_( std::move( finish ) ) {}

   ~Pipeline() {
      {
         const std::lock_guard lock( mutex_ );
         isEnding_ = true;
      }
      isThere_.notify_all();
      for( std::thread& thread : threads_ ) {
         thread.join();
      }
   }
   Pipeline( const Pipeline& ) = delete;
   Pipeline& operator=( const Pipeline& ) = delete;

   // A job to be filled: a finished one, whose memory is used again, or a new one.
   Job spare() {
      if( spare_.empty() ) {
         return {};
      }
      Job job = std::move( spare_.back() );
      spare_.pop_back();
      return job;
   }

   // Does the job, in another thread if `isMany`: more jobs will follow without a wait, and there
   // is so much to do for them that it is worth sharing.
   void give( Job job, bool isMany ) {
      if( isMany ) {
         start();
      }
      if( !isMany || threads_.empty() ) {
         drain();
         work_( job, 0 );
         finish( job );
         return;
      }
      {
         const std::lock_guard lock( mutex_ );
         all_.push_back( std::make_unique<Slot>( Slot{ std::move( job ) } ) );
      }
      isThere_.notify_one();
      while( all_.size() > 3 * threads_.size() || isFirstDone() ) {
         finishFirst();
      }
   }

   // Finishes all that was given.
   void drain() {
      while( !all_.empty() ) {
         finishFirst();
      }
   }

private:
   // Threads write into several at once, which are to share no line of a cache.
   struct alignas( 128 ) Slot {
      Job job;
      bool isTaken = false;
      bool isDone = false;
   };

   void start() {
      if( !threads_.empty() || hasTried_ ) {
         return;
      }
      hasTried_ = true;
      std::size_t processors = std::thread::hardware_concurrency();
#ifdef __linux__
      // Of which this process may not use all.
      if( cpu_set_t own; ::sched_getaffinity( 0, sizeof own, &own ) == 0 ) {
         processors = static_cast<std::size_t>( CPU_COUNT( &own ) );
      }
#endif
      try {
         for( std::size_t i = 1; i < processors && i < mostThreads; ++i ) {
            threads_.emplace_back( [this, i] { run( i ); } );
         }
      } catch( const std::system_error& ) {
         // With fewer threads, then.
      }
   }

   // With the lock: the first slot that nobody has begun, or null.
   Slot* take() {
      for( const auto& slot : all_ ) {
         if( !slot->isTaken ) {
            slot->isTaken = true;
            return slot.get();
         }
      }
      return nullptr;
   }

   void run( std::size_t thread ) {
      std::unique_lock lock( mutex_ );
      for( ;; ) {
         Slot* slot = nullptr;
         isThere_.wait( lock, [&] { return isEnding_ || ( slot = take() ) != nullptr; } );
         if( !slot ) {
            return;
         }
         lock.unlock();
         work_( slot->job, thread );
         lock.lock();
         slot->isDone = true;
         isDone_.notify_one();
      }
   }

   bool isFirstDone() {
      const std::lock_guard lock( mutex_ );
      return !all_.empty() && all_.front()->isDone;
   }

   void finish( Job& job ) {
      finish_( job );
      spare_.push_back( std::move( job ) );
   }

   // Works on others while the first one isn't done.
   void finishFirst() {
      std::unique_lock lock( mutex_ );
      while( !all_.front()->isDone ) {
         if( Slot* const slot = take() ) {
            lock.unlock();
            work_( slot->job, 0 );
            lock.lock();
            slot->isDone = true;
         } else {
            isDone_.wait( lock, [&] { return all_.front()->isDone; } );
         }
      }
      const auto first = std::move( all_.front() );
      all_.pop_front();
      lock.unlock();
      finish( first->job );
   }

   Work work_;
   Finish finish_;
   std::mutex mutex_;
   std::condition_variable isThere_;
   std::condition_variable isDone_;
   std::deque<std::unique_ptr<Slot>> all_;
   std::vector<Job> spare_;
   std::vector<std::thread> threads_;
   bool isEnding_ = false;
   bool hasTried_ = false;
};

} // namespace Vorn
