// What Python code passes, as the codec takes it.
#include "Arguments.h"

#include <Vorn/Error.h>
#include <Vorn/Text.h>

namespace Vorn::Python {

namespace {

constexpr int littleEndian = 1;
constexpr int isUnsigned = 0;

// Whether it is an int or what stands for one exactly, such as NumPy's integers.
bool isInt( py::handle object ) { return PyIndex_Check( object.ptr() ) != 0; }

py::object asInt( py::handle object ) {
   PyObject* const number = PyNumber_Index( object.ptr() );
   if( !number ) {
      throw py::error_already_set();
   }
   return py::reinterpret_steal<py::object>( number );
}

// Python refuses to write very long numbers in decimal digits.
std::string digitsOf( const py::object& number ) {
   const bool isLong = _PyLong_NumBits( number.ptr() ) > Value::maxBits;
   return py::str( isLong ? py::reinterpret_steal<py::object>( PyNumber_ToBase( number.ptr(), 16 ) )
                          : number );
}

} // namespace

std::string kindOf( py::handle object ) {
   const std::string name = Py_TYPE( object.ptr() )->tp_name;
   const bool isVowel = name.find_first_of( "aeiouAEIOU" ) == 0;
   return ( isVowel ? "an " : "a " ) + name;
}

std::string_view textOf( py::handle text, const char* what ) {
   if( !PyUnicode_Check( text.ptr() ) ) {
      throw Error( std::string( what ) + " is " + kindOf( text ) + "; give a str" );
   }
   Py_ssize_t size = 0;
   const char* const characters = PyUnicode_AsUTF8AndSize( text.ptr(), &size );
   if( !characters ) {
      PyErr_Clear();
      throw Error( std::string( what ) + " is no valid text" );
   }
   return { characters, static_cast<std::size_t>( size ) };
}

std::string chipTextOf( py::handle chip ) {
   if( isInt( chip ) ) {
      return digitsOf( asInt( chip ) );
   }
   if( !PyUnicode_Check( chip.ptr() ) ) {
      throw Error( "the chip is " + kindOf( chip ) + "; give its name or its number" );
   }
   return std::string( textOf( chip, "the chip" ) );
}

U64 indexOf( py::handle number, const char* name, U64 largest ) {
   if( !isInt( number ) ) {
      throw Error( std::string( name ) + " is " + kindOf( number ) + "; give an int" );
   }
   const py::object given = asInt( number );
   const U64 index = PyLong_AsUnsignedLongLong( given.ptr() );
   if( index == ~U64( 0 ) && PyErr_Occurred() ) {
      PyErr_Clear();
      return parseIndex( digitsOf( given ), name, largest );
   }
   return index;
}

Value valueOf( py::handle value, const Layout& layout, const Field& field ) {
   if( PyUnicode_Check( value.ptr() ) ) {
      const auto text = textOf( value, "the value" );
      if( text == maskWord ) {
         return Value::onesOf( field.width );
      }
      const Value parsed = parseValue( text, field.name );
      layout.requireFits( field, parsed, text );
      return parsed;
   }
   if( !isInt( value ) ) {
      throw Error( "the value of field " + std::string( field.name ) + " is " + kindOf( value ) +
                   "; give an int, or a text as vorn takes it" );
   }
   const py::object number = asInt( value );
   if( _PyLong_Sign( number.ptr() ) < 0 ) {
      parseValue( digitsOf( number ), field.name ); // refuses it
   }
   if( _PyLong_NumBits( number.ptr() ) > Value::maxBits ) {
      layout.requireFits( field, Value::tooLarge(), digitsOf( number ) );
   }
   Value::Words words{};
   auto* const longObject = reinterpret_cast<PyLongObject*>( number.ptr() );
   if( _PyLong_AsByteArray( longObject, reinterpret_cast<unsigned char*>( words.data() ),
                            sizeof words, littleEndian, isUnsigned ) != 0 ) {
      throw py::error_already_set();
   }
   return Value( words );
}

py::object intOf( const Value& value, unsigned width ) {
   PyObject* const number =
      width <= 64
         ? PyLong_FromUnsignedLongLong( value.word( 0 ) )
         : _PyLong_FromByteArray( reinterpret_cast<const unsigned char*>( value.words().data() ),
                                  ( width + 63 ) / 64 * 8, littleEndian, isUnsigned );
   if( !number ) {
      throw py::error_already_set();
   }
   return py::reinterpret_steal<py::object>( number );
}

std::vector<const Field*> fieldsOf( py::handle names, const Layout& layout ) {
   std::vector<const Field*> fields;
   if( names.is_none() ) {
      for( const Field& field : layout.fields() ) {
         fields.push_back( &field );
      }
      return fields;
   }
   if( PyUnicode_Check( names.ptr() ) || !py::isinstance<py::iterable>( names ) ) {
      throw Error( "fields is " + kindOf( names ) + "; give a list of names" );
   }
   for( const py::handle name : names ) {
      fields.push_back( &layout.field( textOf( name, "the name of a field" ) ) );
   }
   return fields;
}

} // namespace Vorn::Python
