// What a test does and watches.
#pragma once

namespace Testing {

// Refers to a callable for as long as it is being called. It costs the compiler a fraction of what
// std::function does, and the tests have a thousand of them.
class Action {
public:
   template<class Callable>
   Action( const Callable& callable )
      : callable_( &callable ), call_( []( const void* one ) {
           static_cast<void>( ( *static_cast<const Callable*>( one ) )() );
        } ) {}

   void operator()() const { call_( callable_ ); }

private:
   const void* callable_;
   void ( *call_ )( const void* );
};

} // namespace Testing
