// Message assertions: who gets the message, and when.
#include <Oru/Sassert.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Oru::SassertHelper;

class Sassert : public testing::Test {
protected:
   void SetUp() override {
      Oru::sassertSinkIs( [this]( const std::string& expression, const std::string& message ) {
         delivered_.push_back( expression + '/' + message );
      } );
   }
   void TearDown() override { Oru::sassertSinkIs( {} ); }

   std::vector<std::string> delivered_;
};

TEST_F( Sassert, DeliversExpressionAndMessageAtItsEnd ) {
   {
      SassertHelper helper( "0" );
      helper.stream() << "chipType: " << Oru::String( "Software" ) << " variant: " << 9;
      EXPECT_TRUE( delivered_.empty() );
   }
   EXPECT_EQ( delivered_, ( std::vector<std::string>{ "0/chipType: Software variant: 9" } ) );
}

TEST_F( Sassert, EmptyMessage ) {
   { SassertHelper helper( "false" ); }
   EXPECT_EQ( delivered_, ( std::vector<std::string>{ "false/" } ) );
}

TEST_F( Sassert, EachHelperHasItsOwnMessage ) {
   {
      SassertHelper outer( "outer" );
      outer.stream() << 1;
      { SassertHelper( "inner" ).stream() << 2; }
      outer.stream() << 3;
   }
   EXPECT_EQ( delivered_, ( std::vector<std::string>{ "inner/2", "outer/13" } ) );
}

TEST_F( Sassert, EmptySinkRestoresStandardError ) {
   Oru::sassertSinkIs( {} );
   testing::internal::CaptureStderr();
   { SassertHelper( "false" ).stream() << "fieldName not found."; }
   EXPECT_EQ( testing::internal::GetCapturedStderr(), "assertion false: fieldName not found.\n" );
   EXPECT_TRUE( delivered_.empty() );
}

TEST_F( Sassert, DropsWhatASinkThrows ) {
   Oru::sassertSinkIs(
      []( const std::string&, const std::string& ) { throw std::runtime_error( "sink" ); } );
   EXPECT_NO_THROW( { SassertHelper helper( "0" ); } );
}

TEST_F( Sassert, ASinkMayReplaceItself ) {
   Oru::sassertSinkIs( [this]( const std::string& expression, const std::string& ) {
      const std::string kept = expression; // the sink ends with its replacement
      std::vector<std::string>& delivered = delivered_;
      Oru::sassertSinkIs( [&delivered]( const std::string& next, const std::string& ) {
         delivered.push_back( "second " + next );
      } );
      delivered.push_back( "first " + kept );
   } );
   { SassertHelper helper( "a" ); }
   { SassertHelper helper( "b" ); }
   EXPECT_EQ( delivered_, ( std::vector<std::string>{ "first a", "second b" } ) );
}

} // namespace
