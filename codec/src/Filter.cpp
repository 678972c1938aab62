// Conditions on the fields of an entry: `vsi >= 2000 && learnEnable == 1`.
#include <Vorn/Filter.h>

#include <Vorn/Bits.h>
#include <Vorn/Error.h>
#include <Vorn/Images.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Vorn {

namespace {

enum class Mark {
   end,
   name,
   value,
   equal,
   unequal,
   less,
   lessOrEqual,
   greater,
   greaterOrEqual,
   both,
   either,
   negation,
   in,
   bits,
   range,
   comma,
   open,
   close,
};

struct Token {
   Mark mark = Mark::end;
   std::string_view text;
   std::size_t at = 0;
};

bool isBlank( char c ) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

bool isLetter( char c ) { return ( c >= 'a' && c <= 'z' ) || ( c >= 'A' && c <= 'Z' ) || c == '_'; }

bool isDigit( char c ) { return c >= '0' && c <= '9'; }

// The end of a name or a value: ".." belongs to neither, and so a range needs no blanks.
std::size_t wordEnd( std::string_view text, std::size_t at ) {
   while( at < text.size() ) {
      const char c = text[at];
      const bool isDot = c == '.' && text.substr( at, 2 ) != "..";
      if( !isLetter( c ) && !isDigit( c ) && c != ':' && c != '-' && !isDot ) {
         break;
      }
      ++at;
   }
   return at;
}

struct Sign {
   std::string_view text;
   Mark mark;
};

// The longer ones before those that they begin with.
constexpr Sign signs[] = {
   { "==", Mark::equal },       { "!=", Mark::unequal },
   { "<=", Mark::lessOrEqual }, { ">=", Mark::greaterOrEqual },
   { "&&", Mark::both },        { "||", Mark::either },
   { "..", Mark::range },       { "<", Mark::less },
   { ">", Mark::greater },      { "!", Mark::negation },
   { "&", Mark::bits },         { ",", Mark::comma },
   { "(", Mark::open },         { "{", Mark::open },
   { "[", Mark::open },         { ")", Mark::close },
   { "}", Mark::close },        { "]", Mark::close },
};

constexpr Sign keywords[] = {
   { "and", Mark::both }, { "or", Mark::either }, { "not", Mark::negation }, { "in", Mark::in }
};

// What people write in other languages, and what they should write here.
constexpr std::pair<std::string_view, std::string_view> foreign[] = { { "=", "==" },
                                                                      { "|", "||" },
                                                                      { "~", "!" } };

Token tokenAt( std::string_view text, std::size_t at ) {
   while( at < text.size() && isBlank( text[at] ) ) {
      ++at;
   }
   if( at == text.size() ) {
      return { Mark::end, {}, at };
   }
   if( const auto end = wordEnd( text, at ); end > at ) {
      const auto word = text.substr( at, end - at );
      for( const Sign& known : keywords ) {
         if( known.text == word ) {
            return { known.mark, word, at };
         }
      }
      const bool isName = isLetter( word[0] ) &&
                          std::all_of( word.begin(), word.end(),
                                       []( char c ) { return isLetter( c ) || isDigit( c ); } );
      return { isName ? Mark::name : Mark::value, word, at };
   }
   const auto rest = text.substr( at );
   for( const Sign& known : signs ) {
      if( rest.starts_with( known.text ) ) {
         return { known.mark, rest.substr( 0, known.text.size() ), at };
      }
   }
   for( const auto& [wrong, right] : foreign ) {
      if( rest.starts_with( wrong ) ) {
         throw BadText( at, "bad sign " + inQuotes( wrong ) + "; did you mean " +
                               std::string( right ) + '?' );
      }
   }
   throw BadText( at,
                  "bad character " + inQuotes( text.substr( at, 1 ) ) +
                     "; a condition is made of fields, values, == != < <= > >= in & && || ! and "
                     "parentheses" );
}

// A value, and where it stands.
struct Constant {
   Value value;
   Token token;
};

// A field, perhaps with a mask, or a value.
struct Operand {
   Token token;
   std::optional<Constant> constant; // of a value
   std::optional<Constant> mask;     // of a field

   bool isField() const { return !constant; }
};

struct ConstantRange {
   Constant first;
   Constant last;
};

enum class Kind { all, any, bare, compared, among };

// A part of the condition. A negation is kept in the part that it negates.
struct Node {
   Kind kind = Kind::bare;
   bool isNegated = false;
   std::size_t at = 0;
   std::vector<Node> parts;           // of all, any
   Operand left;                      // of the others
   Token comparison;                  // of compared
   Operand right;                     // of compared
   std::vector<ConstantRange> ranges; // of among
};

Constant constantOf( const Token& token, std::string_view name ) {
   const auto text = token.text;
   const bool isDecimal =
      std::all_of( text.begin(), text.end(), []( char c ) { return isDigit( c ) || c == '_'; } );
   const auto digits = text.find_first_not_of( '0' );
   if( isDecimal && text.size() > 1 && text[0] == '0' ) {
      throw BadText( token.at,
                     "number " + shown( text ) +
                        " begins with 0, as octal ones do elsewhere; write " +
                        ( digits == std::string_view::npos ? std::string( "0" )
                                                           : shown( text.substr( digits ) ) ) +
                        ", or a hexadecimal number after 0x" );
   }
   try {
      const Value value = parseValue( text, name );
      if( value.bits() > Value::maxBits ) {
         throw Error( "value " + shown( text ) + " is too large for any field" );
      }
      return { value, token };
   } catch( const Error& error ) {
      throw BadText( token.at, error.message() );
   }
}

bool isComparison( Mark mark ) { return mark >= Mark::equal && mark <= Mark::greaterOrEqual; }

std::string nameOf( const Token& token ) {
   return token.mark == Mark::end ? "end" : inQuotes( token.text );
}

class Parser {
public:
   explicit Parser( std::string_view text ) : text_( text ) { advance(); }

   Node parse() {
      if( token_.mark == Mark::end ) {
         refuse( "the condition is empty; write one such as vsi >= 2000" );
      }
      Node node = either();
      if( token_.mark == Mark::close ) {
         refuse( "nothing is open that " + nameOf( token_ ) + " closes" );
      }
      if( token_.mark != Mark::end ) {
         refuseAfter();
      }
      requireField( node );
      return node;
   }

private:
   // Nobody writes deeper ones, and they would need an unlimited stack.
   static constexpr unsigned deepest = 100;

   [[noreturn]] void refuse( const std::string& message ) const {
      throw BadText( token_.at, message );
   }

   [[noreturn]] void refuseAfter() const {
      if( token_.mark == Mark::comma ) {
         refuse( "unexpected \",\"; write a set as in { 1, 2, 5..9 }" );
      }
      if( token_.mark == Mark::range ) {
         refuse( "unexpected \"..\"; write a range as in 100..200" );
      }
      refuse( "unexpected " + nameOf( token_ ) + "; && or || has to stand before it" );
   }

   void advance() { token_ = tokenAt( text_, token_.at + token_.text.size() ); }

   bool take( Mark mark ) {
      if( token_.mark != mark ) {
         return false;
      }
      advance();
      return true;
   }

   Node chain( Mark mark, Kind kind, Node ( Parser::*operandOf )() ) {
      Node first = ( this->*operandOf )();
      if( token_.mark != mark ) {
         return first;
      }
      Node node;
      node.kind = kind;
      node.at = first.at;
      requireField( first );
      node.parts.push_back( std::move( first ) );
      while( take( mark ) ) {
         node.parts.push_back( ( this->*operandOf )() );
         requireField( node.parts.back() );
      }
      return node;
   }

   Node either() { return chain( Mark::either, Kind::any, &Parser::both ); }
   Node both() { return chain( Mark::both, Kind::all, &Parser::part ); }

   // A value alone is no condition.
   static void requireField( const Node& node ) {
      if( node.kind == Kind::bare && !node.left.isField() ) {
         throw BadText( node.at, "value " + shown( node.left.token.text ) +
                                    " is compared with nothing; write a field and == before it" );
      }
   }

   Node part() {
      if( token_.mark == Mark::negation ) {
         const Token negation = token_;
         enter();
         advance();
         Node node = part();
         --depth_;
         if( negation.text == "!" && node.kind != Kind::bare &&
             text_[afterBlanks( negation )] != '(' && text_[afterBlanks( negation )] != '!' ) {
            throw BadText( negation.at, "\"!\" before a comparison can be read in two ways; write "
                                        "!( ... ) around it" );
         }
         requireField( node );
         node.isNegated = !node.isNegated;
         return node;
      }
      if( token_.mark == Mark::open ) {
         Node node = inParentheses();
         const bool isOperand = node.kind == Kind::bare && !node.isNegated;
         return isOperand ? compared( node.left ) : node;
      }
      return compared( operand( "a condition" ) );
   }

   std::size_t afterBlanks( const Token& token ) const {
      return tokenAt( text_, token.at + token.text.size() ).at;
   }

   void enter() {
      if( ++depth_ > deepest ) {
         refuse( "the condition is nested too deeply; " + std::to_string( deepest ) +
                 " levels are allowed" );
      }
   }

   Node inParentheses() {
      const Token opened = token_;
      if( opened.text != "(" ) {
         refuse( "unexpected " + nameOf( opened ) + "; a set stands after `in`" );
      }
      enter();
      advance();
      if( token_.mark == Mark::close ) {
         refuse( "nothing stands in the parentheses" );
      }
      Node node = either();
      if( token_.mark == Mark::end ) {
         throw BadText( opened.at, "\"(\" is not closed" );
      }
      if( token_.mark != Mark::close ) {
         refuseAfter();
      }
      requireClose( opened );
      --depth_;
      return node;
   }

   void requireClose( const Token& opened ) {
      const char wanted = opened.text == "(" ? ')' : opened.text == "{" ? '}' : ']';
      if( token_.mark == Mark::end ) {
         throw BadText( opened.at, inQuotes( opened.text ) + " is not closed" );
      }
      if( token_.mark != Mark::close || token_.text[0] != wanted ) {
         refuse( "unexpected " + nameOf( token_ ) + "; did you mean " + wanted + '?' );
      }
      advance();
   }

   // `name` is what a value is of, for messages.
   Operand operand( std::string_view name ) {
      Operand operand;
      operand.token = token_;
      if( token_.mark == Mark::value ) {
         operand.constant = constantOf( token_, name );
      } else if( token_.mark != Mark::name ) {
         refuse( "unexpected " + nameOf( token_ ) + "; a field or a value has to stand here" );
      }
      advance();
      if( token_.mark == Mark::bits ) {
         masked( operand );
      }
      return operand;
   }

   void masked( Operand& operand ) {
      if( !operand.isField() ) {
         refuse( "a mask stands after a field; write it as destination & 0xff" );
      }
      advance();
      operand.mask = constant( operand.token.text );
      if( operand.mask->value.bits() == 0 ) {
         throw BadText( operand.mask->token.at, "a mask of 0 leaves nothing" );
      }
      if( token_.mark == Mark::bits ) {
         refuse( "a field has one mask" );
      }
   }

   Constant constant( std::string_view name ) {
      if( token_.mark != Mark::value ) {
         refuse( "unexpected " + nameOf( token_ ) + "; a value has to stand here" );
      }
      const Constant found = constantOf( token_, name );
      advance();
      return found;
   }

   Node compared( Operand left ) {
      if( token_.mark == Mark::bits ) {
         masked( left );
      }
      Node node;
      node.at = left.token.at;
      node.left = std::move( left );
      if( isComparison( token_.mark ) ) {
         node.kind = Kind::compared;
         node.comparison = token_;
         advance();
         node.right =
            token_.mark == Mark::open ? operandInParentheses() : operand( node.left.token.text );
         if( !node.left.isField() && !node.right.isField() ) {
            throw BadText( node.at, "two values are compared; one has to be a field" );
         }
         if( isComparison( token_.mark ) ) {
            refuse( "comparisons can't be chained; write field in first..last, or &&" );
         }
         if( token_.mark == Mark::range ) {
            refuse( "a range is not compared with " + nameOf( node.comparison ) +
                    "; write field in first..last" );
         }
      } else if( token_.mark == Mark::in || isNotIn() ) {
         among( node );
      }
      return node;
   }

   bool isNotIn() const {
      return token_.mark == Mark::negation && token_.text == "not" &&
             tokenAt( text_, token_.at + token_.text.size() ).mark == Mark::in;
   }

   Operand operandInParentheses() {
      const Node node = inParentheses();
      if( node.kind != Kind::bare || node.isNegated ) {
         throw BadText( node.at, "a field or a value has to stand here, no condition" );
      }
      return node.left;
   }

   void among( Node& node ) {
      node.kind = Kind::among;
      node.isNegated = take( Mark::negation );
      if( !node.left.isField() ) {
         throw BadText( node.at, "a field has to stand before `in`" );
      }
      advance();
      if( token_.mark != Mark::open ) {
         node.ranges.push_back( range( node.left.token.text ) );
         return;
      }
      const Token opened = token_;
      advance();
      do {
         node.ranges.push_back( range( node.left.token.text ) );
      } while( take( Mark::comma ) );
      requireClose( opened );
   }

   ConstantRange range( std::string_view name ) {
      const Constant first = constant( name );
      if( !take( Mark::range ) ) {
         return { first, first };
      }
      const Constant last = constant( name );
      if( last.value < first.value ) {
         throw BadText( first.token.at,
                        "range " + shown( first.token.text ) + ".." + shown( last.token.text ) +
                           " ends before it begins; did you mean " + shown( last.token.text ) +
                           ".." + shown( first.token.text ) + '?' );
      }
      return { first, last };
   }

   std::string_view text_;
   Token token_;
   unsigned depth_ = 0;
};

// What becomes of an image that passes or fails a test.
constexpr std::size_t accepted = ~std::size_t( 0 );
constexpr std::size_t rejected = accepted - 1;

template<class Number>
struct Range {
   Number first;
   Number last;
};

// A field's bits, those of a mask alone.
struct Masked {
   Field field;
   Value mask; // ones where there is none
};

Value operator&( const Value& left, const Value& right ) {
   Value::Words words{};
   for( unsigned i = 0; i < words.size(); ++i ) {
      words[i] = left.word( i ) & right.word( i );
   }
   return Value( words );
}

// One field against ranges or another field. Tests are numbered in the order in which a reader
// meets them, and lead only to later ones: so one after another they can be taken over columns.
struct Test {
   Masked left;
   std::vector<Range<U64>> narrow; // of a field of 64 bits or less
   std::vector<Range<Value>> wide;
   std::optional<Masked> right; // then the field is compared with that
   Mark comparison = Mark::equal;
   bool wanted = true; // the answer that passes
   std::size_t onPass = accepted;
   std::size_t onFail = rejected;
};

bool holds( Mark comparison, std::strong_ordering order ) {
   switch( comparison ) {
   case Mark::equal:
      return order == 0;
   case Mark::unequal:
      return order != 0;
   case Mark::less:
      return order < 0;
   case Mark::lessOrEqual:
      return order <= 0;
   case Mark::greater:
      return order > 0;
   default:
      return order >= 0;
   }
}

// The comparison with its sides exchanged.
Mark exchanged( Mark comparison ) {
   switch( comparison ) {
   case Mark::less:
      return Mark::greater;
   case Mark::lessOrEqual:
      return Mark::greaterOrEqual;
   case Mark::greater:
      return Mark::less;
   case Mark::greaterOrEqual:
      return Mark::lessOrEqual;
   default:
      return comparison;
   }
}

template<class Number>
bool isWithin( const std::vector<Range<Number>>& ranges, const Number& number ) {
   return std::any_of( ranges.begin(), ranges.end(), [&]( const Range<Number>& range ) {
      return range.first <= number && number <= range.last;
   } );
}

} // namespace

struct __attribute__( ( visibility( "hidden" ) ) ) Filter::Program {
   Layout layout;
   std::vector<Test> tests;
   std::vector<Field> fields;
   std::size_t bytes = 0; // that an image needs

   explicit Program( const Layout& own ) : layout( own ) {}

   // Puts the tests of the node before those that are there, each of which is numbered from the
   // end; returns the number of the first.
   std::size_t add( const Node& node, std::size_t onPass, std::size_t onFail );
   std::size_t addTest( Test test, std::size_t onPass, std::size_t onFail );
   void finish();

   Masked maskedOf( const Operand& operand ) const;
   void requireValue( const Masked& masked, const Constant& constant, bool isWhole ) const;
   Test testOf( const Node& node ) const;
   void addRange( Test& test, const Value& first, const Value& last ) const;
   bool passes( const Test& test, std::span<const U8> image ) const;
   Value valueOf( const Masked& masked, std::span<const U8> image ) const {
      return layout.value( image, masked.field ) & masked.mask;
   }
};

Masked Filter::Program::maskedOf( const Operand& operand ) const {
   try {
      const Field& field = layout.field( operand.token.text );
      if( operand.mask && operand.mask->value.bits() > field.width ) {
         throw BadText( operand.mask->token.at,
                        "mask " + shown( operand.mask->token.text ) + " of field " +
                           std::string( field.name ) + " is too large; its " +
                           std::to_string( field.width ) + " bits in " + layout.pairText() +
                           " hold at most " + largestOf( field.width ) );
      }
      return { field, operand.mask ? operand.mask->value : Value::onesOf( field.width ) };
   } catch( const BadText& ) {
      throw;
   } catch( const Error& error ) {
      throw BadText( operand.token.at, error.message() );
   }
}

// `isWhole`: the field has to have just this value, which is impossible beyond its mask.
void Filter::Program::requireValue( const Masked& masked, const Constant& constant,
                                    bool isWhole ) const {
   try {
      layout.requireFits( masked.field, constant.value, constant.token.text );
   } catch( const Error& error ) {
      throw BadText( constant.token.at, error.message() );
   }
   if( isWhole && ( constant.value & masked.mask ) != constant.value ) {
      throw BadText( constant.token.at, "value " + shown( constant.token.text ) +
                                           " has bits beyond the mask " + hexOf( masked.mask ) );
   }
}

void Filter::Program::addRange( Test& test, const Value& first, const Value& last ) const {
   if( test.left.field.width <= 64 ) {
      test.narrow.push_back( { first.word( 0 ), last.word( 0 ) } );
   } else {
      test.wide.push_back( { first, last } );
   }
}

Test Filter::Program::testOf( const Node& node ) const {
   Test test;
   test.wanted = !node.isNegated;
   if( node.kind == Kind::bare ) {
      test.left = maskedOf( node.left );
      addRange( test, 0, 0 );
      test.wanted = !test.wanted;
      return test;
   }
   if( node.kind == Kind::among ) {
      test.left = maskedOf( node.left );
      for( const ConstantRange& range : node.ranges ) {
         const bool isOne = range.first.token.at == range.last.token.at;
         requireValue( test.left, range.first, isOne );
         requireValue( test.left, range.last, isOne );
         addRange( test, range.first.value, range.last.value );
      }
      return test;
   }
   test.comparison = node.comparison.mark;
   if( node.left.isField() && node.right.isField() ) {
      test.left = maskedOf( node.left );
      test.right = maskedOf( node.right );
      return test;
   }
   const bool isExchanged = !node.left.isField();
   const Constant& constant = *( isExchanged ? node.left : node.right ).constant;
   test.left = maskedOf( isExchanged ? node.right : node.left );
   test.comparison = isExchanged ? exchanged( test.comparison ) : test.comparison;
   const Mark comparison = test.comparison;
   const bool isWhole = comparison == Mark::equal || comparison == Mark::unequal;
   requireValue( test.left, constant, isWhole );
   if( comparison == Mark::less && constant.value.bits() == 0 ) {
      throw BadText( constant.token.at, "nothing is less than 0" );
   }
   if( comparison == Mark::unequal || comparison == Mark::less || comparison == Mark::greater ) {
      test.wanted = !test.wanted;
   }
   const bool isUpwards = comparison == Mark::less || comparison == Mark::greaterOrEqual;
   const bool isDownwards = comparison == Mark::greater || comparison == Mark::lessOrEqual;
   addRange( test, isDownwards ? Value( 0 ) : constant.value,
             isUpwards ? Value::onesOf( test.left.field.width ) : constant.value );
   return test;
}

std::size_t Filter::Program::addTest( Test test, std::size_t onPass, std::size_t onFail ) {
   test.onPass = onPass;
   test.onFail = onFail;
   tests.push_back( std::move( test ) );
   return tests.size() - 1;
}

std::size_t Filter::Program::add( const Node& node, std::size_t onPass, std::size_t onFail ) {
   if( node.kind != Kind::all && node.kind != Kind::any ) {
      return addTest( testOf( node ), onPass, onFail );
   }
   if( node.isNegated ) {
      std::swap( onPass, onFail );
   }
   const bool isAll = node.kind == Kind::all;
   std::size_t next = isAll ? onPass : onFail;
   for( auto part = node.parts.rbegin(); part != node.parts.rend(); ++part ) {
      next = add( *part, isAll ? next : onPass, isAll ? onFail : next );
   }
   return next;
}

void Filter::Program::finish() {
   std::reverse( tests.begin(), tests.end() );
   const auto renumber = [this]( std::size_t& number ) {
      number = number >= rejected ? number : tests.size() - 1 - number;
   };
   const auto note = [this]( const Field& field ) {
      if( std::find( fields.begin(), fields.end(), field ) == fields.end() ) {
         fields.push_back( field );
         bytes = std::max<std::size_t>( bytes, ( field.end() + 7 ) / 8 );
      }
   };
   for( Test& test : tests ) {
      renumber( test.onPass );
      renumber( test.onFail );
      note( test.left.field );
      if( test.right ) {
         note( test.right->field );
      }
   }
}

bool Filter::Program::passes( const Test& test, std::span<const U8> image ) const {
   if( test.right ) {
      return holds( test.comparison,
                    valueOf( test.left, image ) <=> valueOf( *test.right, image ) );
   }
   if( !test.narrow.empty() ) {
      const Field& field = test.left.field;
      return isWithin( test.narrow,
                       Detail::bitsAt( image.data(), image.size(), field.offset, field.width ) &
                          test.left.mask.word( 0 ) );
   }
   return isWithin( test.wide, valueOf( test.left, image ) );
}

Filter::Filter( std::string_view condition, const Layout& layout ) {
   const auto program = std::make_shared<Program>( layout );
   program->add( Parser( condition ).parse(), accepted, rejected );
   program->finish();
   program_ = program;
}

void Filter::require( std::string_view condition ) { Parser( condition ).parse(); }

const Layout& Filter::layout() const { return program_->layout; }

bool Filter::matches( std::span<const U8> image ) const {
   const Program& program = *program_;
   if( image.size() < program.bytes ) {
      for( const Field& field : program.fields ) {
         program.layout.value( image, field ); // An Error of the first that is missing.
      }
   }
   std::size_t at = 0;
   while( at < rejected ) {
      const Test& test = program.tests[at];
      at = program.passes( test, image ) == test.wanted ? test.onPass : test.onFail;
   }
   return at == accepted;
}

std::span<const Field> Filter::fields() const { return program_->fields; }

PairFilter::PairFilter( std::string condition, std::span<const Layout> layouts )
   : condition_( std::move( condition ) ) {
   Filter::require( condition_ );
   std::optional<BadText> reason;
   for( const Layout& layout : layouts ) {
      try {
         Filter( condition_, layout );
         return;
      } catch( const BadText& bad ) {
         reason = reason ? reason : bad;
      }
   }
   if( reason ) {
      throw *reason;
   }
}

bool PairFilter::matches( const Layout& layout, std::span<const U8> image ) {
   if( const Filter* const filter = filterOf( layout ) ) {
      return filter->matches( image );
   }
   leaveOut( layout, 1 );
   return false;
}

const Filter* PairFilter::filterOf( const Layout& layout ) {
   const Known& known = knownOf( layout );
   return known.filter ? &*known.filter : nullptr;
}

void PairFilter::leaveOut( const Layout& layout, U64 entries ) {
   Known& known = knownOf( layout );
   if( !known.leftOut ) {
      known.leftOut = leftOut_.size();
      leftOut_.push_back( { layout, known.reason, 0 } );
   }
   leftOut_[*known.leftOut].entries += entries;
}

PairFilter::Known& PairFilter::knownOf( const Layout& layout ) {
   if( last_ < known_.size() && known_[last_].layout == layout ) {
      return known_[last_];
   }
   for( last_ = 0; last_ < known_.size(); ++last_ ) {
      if( known_[last_].layout == layout ) {
         return known_[last_];
      }
   }
   Known& known = known_.emplace_back( Known{ layout, {}, {}, {} } );
   try {
      known.filter.emplace( condition_, layout );
   } catch( const BadText& bad ) {
      known.reason = bad.message();
   }
   return known;
}

} // namespace Vorn
