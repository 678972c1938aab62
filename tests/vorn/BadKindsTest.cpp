// Bad input of all verbs that read: each kind of it with its message, which says what is wrong and
// where.
#include "RunVorn.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

struct Kind {
   const char* what;
   const char* command; // after "vorn", with quotes as in a shell
   std::string message;
   std::string input = {};
   int status = 1;
   bool hasPrinted = false; // what came before it
};

// An entry of TcamActionTable on chip type 10, which has 8 bytes.
const std::string image = "4523010000000000\n";

const std::vector<Kind> decoded{
   { "condition: a field misspelt", "decode TcamActionTable --chip 10 --where 'acton == 1' -",
     "--where:1: no field \"acton\" in TcamActionTable on BCM88690_B0; did you mean action?",
     image },
   { "condition: one equals sign", "decode TcamActionTable --chip 10 --where 'action = 1' -",
     "--where:8: bad sign \"=\"; did you mean ==?", image },
   { "condition: no value", "decode TcamActionTable --chip 10 --where 'action ==' -",
     "--where:10: unexpected end; a field or a value has to stand here", image },
   { "condition: unclosed parenthesis", "decode TcamActionTable --chip 10 --where '(action == 1' -",
     "--where:1: \"(\" is not closed", image },
   { "condition: unclosed set", "decode TcamActionTable --chip 10 --where 'action in {1,2' -",
     "--where:11: \"{\" is not closed", image },
   { "condition: range backwards", "decode TcamActionTable --chip 10 --where 'action in 9..3' -",
     "--where:11: range 9..3 ends before it begins; did you mean 3..9?", image },
   { "condition: text after", "decode TcamActionTable --chip 10 --where 'action == 1 foo' -",
     "--where:13: unexpected \"foo\"; && or || has to stand before it", image },
   { "condition: value too large",
     "decode TcamActionTable --chip 10 --where 'action == 0x100000000' -",
     "--where:11: value 0x100000000 of field action is too large; its 32 bits in TcamActionTable "
     "on BCM88690_B0 hold at most 0xffffffff",
     image },
   { "condition: octal", "decode TcamActionTable --chip 10 --where 'action == 010' -",
     "--where:11: number 010 begins with 0, as octal ones do elsewhere; write 10, or a hexadecimal "
     "number after 0x",
     image },
   { "condition: negative", "decode TcamActionTable --chip 10 --where 'action > -1' -",
     "--where:10: negative value -1 for action; a value is 0 or more", image },
   { "condition: quotes", "decode TcamActionTable --chip 10 --where 'action == \"1\"' -",
     "--where:11: bad character \"\"\"; a condition is made of fields, values, == != < <= > >= in "
     "& && || ! and parentheses",
     image },
   { "condition: one ampersand-and", "decode TcamActionTable --chip 10 --where 'action == 1 &' -",
     "--where:13: a mask stands after a field; write it as destination & 0xff", image },
   { "condition: mask too wide",
     "decode TcamActionTable --chip 10 --where 'action & 0x1ffffffff == 3' -",
     "--where:10: mask 0x1ffffffff of field action is too large; its 32 bits in TcamActionTable on "
     "BCM88690_B0 hold at most 0xffffffff",
     image },
   { "condition: not", "decode TcamActionTable --chip 10 --where ! -",
     "--where:2: unexpected end; a field or a value has to stand here", image },
   { "condition: chain", "decode TcamActionTable --chip 10 --where '1 < action < 5' -",
     "--where:12: comparisons can't be chained; write field in first..last, or &&", image },
   { "condition: empty set", "decode TcamActionTable --chip 10 --where 'action in {}' -",
     "--where:12: unexpected \"}\"; a value has to stand here", image },
   { "fields: empty name", "decode TcamActionTable --chip 10 --fields action, -",
     "--fields:8: a name is missing; write fields as vsi,vlanEditVid1", image },
   { "fields: misspelt", "decode TcamActionTable --chip 10 --fields acton -",
     "--fields:1: no field \"acton\" in TcamActionTable on BCM88690_B0; did you mean action?",
     image },
   { "fields: twice", "decode TcamActionTable --chip 10 --fields action,action -",
     "--fields:8: field action is given twice", image },
   { "fields: pattern without match", "decode TcamActionTable --chip 10 --fields zz* -",
     "--fields:1: no field of TcamActionTable on BCM88690_B0 matches \"zz*\"", image },
   { "fields: blanks for commas", "decode TcamActionTable --chip 10 --fields 'action foo' -",
     "--fields:1: no field \"action foo\" in TcamActionTable on BCM88690_B0; allowed: action",
     image },
   { "fields: of another table", "decode TcamActionTable --chip 10 --fields vsi -",
     "--fields:1: no field \"vsi\" in TcamActionTable on BCM88690_B0; allowed: action", image },
   { "stride too short", "decode TcamActionTable --chip 10 --stride 4 -",
     "vorn: a stride of 4 bytes is too short; an entry of TcamActionTable on BCM88690_B0 has 8",
     image },
   { "stride not a number", "decode TcamActionTable --chip 10 --stride x -",
     "vorn: bad number \"x\" for stride; write decimal digits, hexadecimal digits after 0x or "
     "binary digits after 0b",
     image },
   { "stride of nothing", "decode TcamActionTable --chip 10 --stride 0 -",
     "vorn: a stride of 0 bytes is too short; it is at least the bytes of an entry", image },
   { "stride negative", "decode TcamActionTable --chip 10 --stride -8 -",
     "vorn: negative value -8 for stride; a value is 0 or more", image },
   { "stride octal", "decode TcamActionTable --chip 10 --stride 010 -",
     "vorn: bad number \"010\" for stride; a leading 0 may mean octal; write 10 or 0x8", image },
   { "stride too long", "decode TcamActionTable --chip 10 --stride 2000000 -",
     "vorn: a stride of 2000000 bytes is too long; it is at most 1048576", image },
   { "first entry words", "decode TcamActionTable --chip 10 --first-entry last -",
     "vorn: bad number \"last\" for entry; write decimal digits, hexadecimal digits after 0x or "
     "binary digits after 0b",
     image },
   { "first entry beyond",
     "decode TcamActionTable --chip 10 --first-entry 99999 --image-format stream -",
     "<stdin>:0x0: entry 99999 is out of range in TcamActionTable on BCM88690_B0; allowed: 0 to "
     "2047",
     image },
   { "array beyond", "decode TcamActionTable --chip 10 --array 99 --image-format stream -",
     "<stdin>:0x0: array 99 is out of range in TcamActionTable on BCM88690_B0; allowed: 0 to 23",
     image },
   { "identifier beyond", "decode TcamActionTable --chip 10 --identifier 9 --image-format stream -",
     "<stdin>:0x0: identifier 9 is out of range in TcamActionTable on BCM88690_B0; allowed: 0 to 1",
     image },
   { "array octal", "decode TcamActionTable --chip 10 --array 01 --image-format stream -",
     "vorn: bad number \"01\" for array; a leading 0 may mean octal; write 1", image },
   { "variant words", "decode LifTable --chip 10 --variant first -",
     "vorn: bad number \"first\" for variant; write decimal digits, hexadecimal digits after 0x or "
     "binary digits after 0b",
     "00" },
   { "variant beyond", "decode LifTable --chip 10 --variant 300 -",
     "vorn: LifTable has no variant 300 on BCM88690_B0; allowed: 0-4,6-11", "00" },
   { "variant octal", "decode LifTable --chip 10 --variant 03 -",
     "vorn: bad number \"03\" for variant; a leading 0 may mean octal; write 3", "00" },
   { "chip octal", "decode LifTable --chip 010 -",
     "vorn: bad number \"010\" for chip; a leading 0 may mean octal; write 10 or 0x8", "00" },
   { "stream left over", "decode TcamActionTable --chip 10 --image-format stream -",
     "<stdin>:0x8: 2 bytes are left over after 1 entry of TcamActionTable on BCM88690_B0, which "
     "have 8 bytes each; --stride says where entries lie further apart",
     "4523010000000000 4523", 1, true },
   { "stream bad digit", "decode TcamActionTable --chip 10 --image-format stream -",
     "<stdin>:2:3: bad digit \"z\"; a stream is hexadecimal digits, two for each byte, and blanks",
     "4523\n01z0" },
   { "stream odd", "decode TcamActionTable --chip 10 --image-format stream -",
     "<stdin>:1:15: an odd number of digits; write two for each byte", "452301000000000" },
   { "stream 0x inside", "decode TcamActionTable --chip 10 --image-format stream -",
     "<stdin>:1:2: bad digit \"x\"; a stream is hexadecimal digits, two for each byte, and blanks",
     "0x4523010000000000 0x4523010000000000" },
   { "binary left over", "decode TcamActionTable --chip 10 --image-format binary -",
     "<stdin>:0x8: 1 byte is left over after 1 entry of TcamActionTable on BCM88690_B0, which have "
     "8 bytes each; --stride says where entries lie further apart",
     std::string( "E#\001\000\000\000\000\000E", 9 ), 1, true },
   { "binary auto left over", "decode TcamActionTable --chip 10 -",
     "<stdin>:0x8: 2 bytes are left over after 1 entry of TcamActionTable on BCM88690_B0, which "
     "have 8 bytes each; --stride says where entries lie further apart",
     std::string( "E#\001\000\000\000\000\000\000\001", 10 ), 1, true },
   { "binary keep going", "decode TcamActionTable --chip 10 --keep-going --csv -",
     "<stdin>:0x8: 2 bytes are left over after 1 entry of TcamActionTable on BCM88690_B0, which "
     "have 8 bytes each; --stride says where entries lie further apart\nvorn: 1 error, 1 image "
     "printed",
     std::string( "E#\001\000\000\000\000\000\000\001", 10 ), 1, true },
   { "number with minus", "decode TcamActionTable --chip 10 --image-format number -",
     "<stdin>:1:1: bad digit \"-\" in \"-0x0000000000012345\"; write one number in hexadecimal "
     "digits, the highest first",
     "-0x0000000000012345" },
   { "number bad digit", "decode TcamActionTable --chip 10 --image-format number -",
     "<stdin>:1:14: bad digit \"g\" in \"0x00000000000g2345\"; write one number in hexadecimal "
     "digits, the highest first",
     "0x00000000000g2345" },
   { "number two on a line", "decode TcamActionTable --chip 10 --image-format number -",
     "<stdin>:1:20: a second piece \"0x0000000000012345\"; write one number in hexadecimal digits, "
     "the highest first",
     "0x0000000000012345 0x0000000000012345" },
   { "ambiguous 0x", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:1: 0x and 16 digits may be bytes in their order or one number, its highest digit "
     "first; say --image-format bytes or --image-format number",
     "0x4523010000000000" },
   { "words: three", "decode TcamActionTable --chip 10 --image-format words -",
     "<stdin>:1:1: the image has 12 bytes; the fields of TcamActionTable on BCM88690_B0 need 4, a "
     "whole entry has 8; --image-format stream takes digits whose lines mean nothing",
     "0x12345 0 0" },
   { "hexdump ends early", "decode TcamActionTable --chip 10 -",
     "<stdin>:2:1: the hexdump is cut off: it ends without the offset of its end",
     "00000000  45 23 01 00 00 00 00 00  |E#......|\n" },
   { "hexdump left over", "decode TcamActionTable --chip 10 -",
     "<stdin>:0x8: 2 bytes are left over after 1 entry of TcamActionTable on BCM88690_B0, which "
     "have 8 bytes each; --stride says where entries lie further apart",
     "00000000  45 23 01 00 00 00 00 00  00 11 |E#.......|\n0000000a\n", 1, true },
   { "xxd gap", "decode TcamActionTable --chip 10 -",
     "<stdin>:2:1: offset 00000020 where 00000010 is due",
     "00000000: 4523 0100 0000 0000 4523 0100 0000 0000  E#......\n00000020: 4523 0100 0000 0000  "
     "E#......\n",
     1, true },
   { "xxd bad digit", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:28: bad digit \"g\" in \"00g0\"; write two hexadecimal digits for each byte, entry "
     "byte 0 first",
     "00000000: 4523 0100 0000 00g0  E#......\n" },
   { "od octal", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:1: an odd number of digits in \"0000000\"; write two hexadecimal digits for each "
     "byte, entry byte 0 first",
     "0000000 045 043 001 000\n" },
   { "od words of four cut off", "decode TcamActionTable --chip 10 -",
     "<stdin>:2:1: the hexdump is cut off: it ends without the offset of its end",
     "0000000 00012345 00000000\n" },
   { "od words of four, a row missing", "decode TcamActionTable --chip 10 -",
     "<stdin>:2:1: offset 0000040 where 0000020 is due",
     "0000000 00012345 00000000 00012345 00000000\n0000040 00012345 00000000\n0000050\n", 1, true },
   { "od octal words", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:1: octal numbers, as `od` prints them; print hexadecimal ones with `od -tx4`",
     "0000000 021505 000001 000000 000000\n0000010\n" },
   { "address without image", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:1: no image after the address", "0x1101005:\n" },
   { "address of another table", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:11: an odd number of digits in \"0x12345\"; write two hexadecimal digits for each "
     "byte, entry byte 0 first",
     "0x76000c: 0x12345 0x0\n" },
   { "address beyond 32 bits", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:1: address 0x100001101005 is out of range; it is at most 0xffffffff",
     "0x100001101005: 4523010000000000\n" },
   { "address nothing lies at", "decode --chip 10 -",
     "<stdin>:1:1: address 0xfffffffff is out of range; it is at most 0xffffffff",
     "0xfffffffff: 4523010000000000\n" },
   { "address no chip", "decode -",
     "<stdin>:1:12: the image has an address, but nothing says its chip type; give --chip",
     "0x1101005: 4523010000000000\n" },
   { "address bad digit", "decode --chip 10 -",
     "<stdin>:1:1: bad number \"0x11010g5\" for address; write hexadecimal digits after 0x",
     "0x11010g5: 4523010000000000\n" },
   { "address decimal", "decode --chip 10 -",
     "<stdin>:1:1: a dump doesn't say its table; give TABLE and --chip",
     "17829893: 4523010000000000\n" },
   { "address wrong length", "decode --chip 10 -",
     "<stdin>:1:12: no entry at 0x1101005 on BCM88690_B0 has 2 bytes", "0x1101005: 4523\n" },
   { "candump line", "decode --chip 10 -",
     "<stdin>:1:1: bad digit \"(\" in \"(1.0)\"; write two hexadecimal digits for each byte, entry "
     "byte 0 first",
     "(1.0) can0 123#4523\n" },
   { "tag of none", "decode LifTable --chip 10 -",
     "<stdin>:1:1: no variant of LifTable on BCM88690_B0 has tag 0x3f",
     "fffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffff"
     "fffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffff\n" },
   { "csv unclosed quote in header", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:7: the cell \"\"table\" has no closing quote; a cell ends on its line",
     "image,\"table\n4523010000000000,TcamActionTable\n" },
   { "csv unclosed quote", "decode TcamActionTable --chip 10 -",
     "<stdin>:2:17: the cell \"\"4523010000000000\" has no closing quote; a cell ends on its line",
     "table,image\nTcamActionTable,\"4523010000000000\n" },
   { "csv junk after quote", "decode TcamActionTable --chip 10 -",
     "<stdin>:2:18: a cell in quotes ends before \"x,4523010000000000\"; a comma follows it, and a "
     "quote in it is doubled",
     "table,image\n\"TcamActionTable\"x,4523010000000000\n" },
   { "csv too many cells", "decode TcamActionTable --chip 10 -",
     "<stdin>:2:1: the row has 2 cells, the header 1", "image\n4523010000000000,1\n" },
   { "csv too few", "decode TcamActionTable --chip 10 -",
     "<stdin>:2:1: the row has 1 cell, the header 2", "table,image\n4523010000000000\n" },
   { "csv empty image", "decode TcamActionTable --chip 10 -",
     "<stdin>:2:17: the image has 0 bytes; the fields of TcamActionTable on BCM88690_B0 need 4, a "
     "whole entry has 8",
     "table,image\nTcamActionTable,\n" },
   { "csv twice", "decode TcamActionTable --chip 10 -", "<stdin>:1:7: a second column \"image\"",
     "image,image\n4523010000000000,4523010000000000\n" },
   { "csv bad entry", "decode TcamActionTable --chip 10 -",
     "<stdin>:2:1: bad number \"five\" for entry; write decimal digits, hexadecimal digits after "
     "0x or binary digits after 0b",
     "entry,image\nfive,4523010000000000\n" },
   { "csv entry octal", "decode TcamActionTable --chip 10 -",
     "<stdin>:2:1: bad number \"05\" for entry; a leading 0 may mean octal; write 5",
     "entry,image\n05,4523010000000000\n" },
   { "csv entry beyond", "decode TcamActionTable --chip 10 -",
     "<stdin>:2:7: entry 70000 is out of range in TcamActionTable on BCM88690_B0; allowed: 0 to "
     "2047",
     "entry,image\n70000,4523010000000000\n" },
   { "csv other table", "decode TcamActionTable --chip 10 -",
     "<stdin>:2:1: the image is one of LifTable, not of TcamActionTable",
     "table,image\nLifTable,4523010000000000\n" },
   { "csv other chip", "decode TcamActionTable --chip 10 -",
     "<stdin>:2:3: the image is one of BCM88650_B0, not of BCM88690_B0",
     "chip,image\n2,4523010000000000\n" },
   { "csv chip octal", "decode TcamActionTable --chip 10 -",
     "<stdin>:2:1: bad number \"010\" for chip; a leading 0 may mean octal; write 10 or 0x8",
     "chip,image\n010,4523010000000000\n" },
   { "csv semicolons", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:1: semicolons between the cells; write commas",
     "table;image\nTcamActionTable;4523010000000000\n" },
   { "csv tabs", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:1: tabs between the cells; write commas",
     "table\timage\nTcamActionTable\t4523010000000000\n" },
   { "csv address", "decode TcamActionTable --chip 10 -",
     "<stdin>:2:5: no entry of TcamActionTable on BCM88690_B0 lies at 0x5",
     "address,image\n0x5,4523010000000000\n" },
   { "csv header no image", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:1: no column \"image\" in the header of CSV", "table,entry\nTcamActionTable,5\n" },
   { "csv header in quotes, no image", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:1: no column \"image\" in the header of CSV",
     "\"table\",\"entry\"\n\"TcamActionTable\",\"5\"\n" },
   { "csv short image", "decode TcamActionTable --chip 10 -",
     "<stdin>:2:1: the image has 2 bytes; the fields of TcamActionTable on BCM88690_B0 need 4, a "
     "whole entry has 8",
     "image\n4523\n" },
   { "csv bad digit", "decode TcamActionTable --chip 10 -",
     "<stdin>:2:18: bad digit \"z\" in \"452301000000000z\"; write two hexadecimal digits for each "
     "byte, entry byte 0 first",
     "entry,image\n5,452301000000000z\n" },
   { "csv header alone with Image", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:1: bad image \"Entry,Image\"; write hexadecimal digits, perhaps with TABLE CHIP "
     "VARIANT and a colon before them",
     "Entry,Image\n5,4523010000000000\n" },
   { "json entry beyond", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:10: entry 70000 is out of range in TcamActionTable on BCM88690_B0; allowed: 0 to "
     "2047",
     "{\"entry\":70000,\"image\":\"4523010000000000\"}" },
   { "json entry octal", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:11: bad number \"05\" for entry; a leading 0 may mean octal; write 5",
     "{\"entry\":\"05\",\"image\":\"4523010000000000\"}" },
   { "json entry 05", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:10: not valid JSON: unexpected number literal; expected '}'",
     "{\"entry\":05,\"image\":\"4523010000000000\"}" },
   { "json address of other", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:26: address 0x5 is not that of entry 7, which is 0x1100007",
     "{\"address\":\"0x5\",\"entry\":7,\"image\":\"4523010000000000\"}" },
   { "json pretty", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:2: not valid JSON: unexpected end of input; expected string literal; an object "
     "stands on one line: `jq -c .` writes it so, and `jq -c '.[]'` those of an array",
     "{\n  \"image\": \"4523010000000000\"\n}\n" },
   { "json array of objects", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:2: an array holds the bytes or words of one image, not an object; `jq -c '.[]'` "
     "writes each object on a line",
     "[{\"image\":\"4523010000000000\"}]\n" },
   { "json array pretty", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:2: not valid JSON: unexpected end of input; expected '[', '{', or a literal; an "
     "object stands on one line: `jq -c .` writes it so, and `jq -c '.[]'` those of an array",
     "[\n  {\"image\":\"4523010000000000\"}\n]\n" },
   { "json trailing comma line", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:29: not valid JSON: unexpected ','; expected end of input",
     "{\"image\":\"4523010000000000\"},\n" },
   { "json entry negative", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:10: bad number -5; write an integer of 0 or more",
     "{\"entry\":-5,\"image\":\"4523010000000000\"}" },
   { "json entry fraction", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:10: bad number 1.5; write an integer of 0 or more",
     "{\"entry\":1.5,\"image\":\"4523010000000000\"}" },
   { "json single quotes", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:2: not valid JSON: invalid literal", "{'image':'4523010000000000'}" },
   { "json nan", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:10: not valid JSON: invalid literal", "{\"image\":NaN}" },
   { "utf16", "decode TcamActionTable --chip 10 -",
     "<stdin>: this is text in UTF-16, to be saved as UTF-8; --image-format binary takes the bytes "
     "as they are",
     std::string( "\377\3764\0005\0002\0003\0000\0001\0000\0000\0000\0000\0000\0000\0000\0000\0000"
                  "\0000\000\n\000",
                  36 ) },
   { "html", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:1: bad digit \"<\" in \"<html><body>404</body></html>\"; write two hexadecimal "
     "digits for each byte, entry byte 0 first",
     "<html><body>404</body></html>\n" },
   { "a prompt", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:1: bad digit \"$\" in \"$\"; write two hexadecimal digits for each byte, entry "
     "byte 0 first",
     "$ vorn program x\n4523010000000000\n" },
   { "ellipsis", "decode TcamActionTable --chip 10 -",
     "<stdin>:1:9: bad digit \".\" in \"45230100...\"; write two hexadecimal digits for each byte, "
     "entry byte 0 first",
     "45230100...\n" },
   { "truncated gz", "decode TcamActionTable --chip 10 -", "<stdin>: the gzip data is cut off",
     std::string( "\037\213\010\000\000\000\000\000\000\00315", 12 ) },
   { "truncated zstd", "decode TcamActionTable --chip 10 -", "<stdin>: the zstd data is cut off",
     std::string( "(\265/\375\004\000", 6 ) },
   { "xz", "decode TcamActionTable --chip 10 -",
     "<stdin>: this is compressed with xz, to be decompressed with `xz -dc`; --image-format binary "
     "takes the bytes as they are",
     std::string( "\3757zXZ\000\000\004\346\326\264F", 12 ) },
   // As gzip compresses what gzip has compressed, which `vorn` takes off once.
   { "gzip twice", "decode TcamActionTable --chip 10 -",
     "<stdin>: this is compressed with gzip, to be decompressed with `gzip -dc`; --image-format "
     "binary takes the bytes as they are",
     std::string(
        "\037\213\010\000\000\000\000\000\002\003\223\357\346\140\000\001\046\346\342\320"
        "\264\024\006\106\006\227\307\141\206\040\041\000\120\117\320\253\031\000\000\000",
        40 ) },
   { "zip", "decode TcamActionTable --chip 10 -",
     "<stdin>: this is a zip archive, to be unpacked; --image-format binary takes the bytes as "
     "they are",
     std::string( "PK\003\004\024\000\000\000", 8 ) },
   { "elf core", "decode TcamActionTable --chip 10 -",
     "<stdin>: this is a program or core file, not a memory; --image-format binary takes the bytes "
     "as they are",
     std::string( "\177ELF\002\001\001\000\000", 9 ) },
   { "bzip2", "decode TcamActionTable --chip 10 -",
     "<stdin>: this is compressed with bzip2, to be decompressed with `bzip2 -dc`; --image-format "
     "binary takes the bytes as they are",
     std::string( "BZh91AY&SY\000\001", 12 ) },
   { "nonexistent file", "decode TcamActionTable --chip 10 --file /nowhere/x",
     "vorn: cannot open /nowhere/x: No such file or directory" },
   { "a directory", "decode TcamActionTable --chip 10 --file /tmp",
     "vorn: cannot read /tmp: Is a directory" },
   { "two files one missing keep going",
     "decode TcamActionTable --chip 10 --keep-going --file /nowhere/x --file /nowhere/y",
     "vorn: cannot open /nowhere/x: No such file or directory\nvorn: cannot open /nowhere/y: No "
     "such file or directory\nvorn: 2 errors, 0 images printed" },
   { "decode file - -", "decode TcamActionTable --chip 10 --file - --file -",
     "vorn: FILE: standard input is given twice", image, 2 },
   { "decode changed-from octal",
     "decode TcamActionTable --chip 10 --changed-from 'TcamActionTable 010 0: 4523010000000000' "
     "4523010000000000",
     "vorn: --changed-from: bad number \"010\" for chip; a leading 0 may mean octal; write 10 or "
     "0x8" },
};

const std::vector<Kind> compared{
   { "diff one file", "diff TcamActionTable --chip 10 4523010000000000",
     "vorn: AFTER is required; see vorn diff --help", "", 2 },
   { "diff three", "diff TcamActionTable --chip 10 4523010000000000 4523010000000000 00",
     "vorn: AFTER: unexpected argument \"00\"; an image of several pieces stands in quotes", "",
     2 },
   { "diff missing", "diff TcamActionTable --chip 10 /nowhere/a /nowhere/b",
     "vorn: no file \"/nowhere/a\", and no image: bad digit \"/\" in \"/nowhere/a\"; write two "
     "hexadecimal digits for each byte, entry byte 0 first",
     "", 2 },
   { "diff both stdin", "diff TcamActionTable --chip 10 - -",
     "vorn: AFTER: standard input can be one of BEFORE and AFTER only", image, 2 },
   { "diff no table", "diff 4523010000000000 4523010000000000",
     "vorn: BEFORE: the image doesn't say its table; give TABLE and --chip, or write TABLE CHIP "
     "VARIANT and a colon before the image",
     "", 2 },
   { "diff lengths", "diff TcamActionTable --chip 10 4523010000000000 4523",
     "vorn: AFTER: the image has 2 bytes; the fields of TcamActionTable on BCM88690_B0 need 4, a "
     "whole entry has 8",
     "", 2 },
   { "diff bad digit", "diff TcamActionTable --chip 10 4523010000000000 452301000000000g",
     "vorn: no file \"452301000000000g\", and no image: bad digit \"g\" in \"452301000000000g\"; "
     "write two hexadecimal digits for each byte, entry byte 0 first",
     "", 2 },
   { "diff fields misspelt",
     "diff TcamActionTable --chip 10 --fields acton 4523010000000000 4523010000000000",
     "--fields:1: no field \"acton\" in TcamActionTable on BCM88690_B0; did you mean action?", "",
     2 },
   { "diff octal chip", "diff TcamActionTable --chip 010 4523010000000000 4523010000000000",
     "vorn: bad number \"010\" for chip; a leading 0 may mean octal; write 10 or 0x8", "", 2 },
   { "diff csv and json",
     "diff TcamActionTable --chip 10 --csv --json 4523010000000000 4523010000000000",
     "vorn: --json excludes --csv; see vorn diff --help", "", 2 },
   { "diff unclosed quote csv", "diff TcamActionTable --chip 10 - 4523010000000000",
     "<stdin>:2:3: the cell \"\"4523010000000000\" has no closing quote; a cell ends on its line",
     "entry,image\n5,\"4523010000000000\n", 2 },
   { "diff left over", "diff TcamActionTable --chip 10 - 4523010000000000",
     "<stdin>:0x8: 2 bytes are left over after 1 entry of TcamActionTable on BCM88690_B0, which "
     "have 8 bytes each; --stride says where entries lie further apart",
     std::string( "E#\001\000\000\000\000\000\000\001", 10 ), 2 },
};

const std::vector<Kind> counted{
   { "condition: stats misspelt", "stats TcamActionTable --chip 10 --where acton -",
     "--where:1: no field \"acton\" in TcamActionTable on BCM88690_B0; did you mean action?",
     image },
   { "fields: stats pattern none", "stats TcamActionTable --chip 10 --fields q* -",
     "--fields:1: no field of TcamActionTable on BCM88690_B0 matches \"q*\"", image },
   { "stats no file", "stats TcamActionTable --chip 10",
     "vorn: FILE is required; see vorn stats --help", "", 2 },
   { "stats missing", "stats TcamActionTable --chip 10 /nowhere/x",
     "vorn: cannot open /nowhere/x: No such file or directory" },
   { "stats no table", "stats -",
     "<stdin>:1:1: the image doesn't say its table; give TABLE and --chip, or write TABLE CHIP "
     "VARIANT and a colon before the image",
     image },
   { "stats bad digit", "stats TcamActionTable --chip 10 -",
     "<stdin>:1:15: bad digit \"z\" in \"45230100000000zz\"; write two hexadecimal digits for each "
     "byte, entry byte 0 first",
     "45230100000000zz\n" },
   { "stats unclosed quote", "stats TcamActionTable --chip 10 -",
     "<stdin>:2:3: the cell \"\"4523010000000000\" has no closing quote; a cell ends on its line",
     "entry,image\n5,\"4523010000000000\n" },
   { "stats length", "stats TcamActionTable --chip 10 -",
     "<stdin>:1:1: the image has 3 bytes; the fields of TcamActionTable on BCM88690_B0 need 4, a "
     "whole entry has 8; --image-format stream takes digits whose lines mean nothing",
     "452301\n" },
   { "stats two files - -", "stats TcamActionTable --chip 10 - -",
     "vorn: FILE: standard input is given twice", image, 2 },
};

const std::vector<Kind> programmed{
   { "a directory", "program /tmp", "vorn: cannot read /tmp: Is a directory" },
   { "a file that isn't there", "program /nowhere/x",
     "vorn: cannot open /nowhere/x: No such file or directory" },
   { "a count in words", "program --count many -",
     "vorn: bad number \"many\" for count; write decimal digits, hexadecimal digits after 0x or "
     "binary digits after 0b" },
   { "an octal count", "program --count 010 -",
     "vorn: bad number \"010\" for count; a leading 0 may mean octal; write 10 or 0x8" },
   { "compressed and cut off", "program -", "<stdin>: the gzip data is cut off",
     std::string( "\037\213\010\000\000\000\000\000\000\00315", 12 ) },
   { "a dump", "program -", "<stdin>:1:1: a line holds one JSON object, not a number", image },
   { "bytes", "program -", "<stdin>:1:4: not valid JSON: the line holds a zero byte",
     std::string( "E#\001\000\000\000\000\000", 8 ) },
   { "a table in an array", "program -",
     "<stdin>:1:10: the value of \"table\" is a string, not an array",
     "{\"table\":[\"LifTable\"],\"chip\":10,\"fields\":{}}" },
   { "a field in an object", "program -",
     "<stdin>:1:47: the value of field \"vsi\" is a number or a string, not an object",
     "{\"table\":\"LifTable\",\"chip\":10,\"fields\":{\"vsi\":{\"value\":1}}}" },
   { "fields as pairs", "program -",
     "<stdin>:1:40: the value of \"fields\" is an object, not an array",
     "{\"table\":\"LifTable\",\"chip\":10,\"fields\":[[\"vsi\",1]]}" },
   { "fields beside the keys", "program -",
     "<stdin>:1:31: unknown key \"vsi\"; allowed: table, chip, variant, entry, array, identifier, "
     "from, fields, image, address",
     "{\"table\":\"LifTable\",\"chip\":10,\"vsi\":1}" },
   { "keys in capitals", "program -", "<stdin>:1:2: unknown key \"Table\"; did you mean table?",
     "{\"Table\":\"LifTable\",\"chip\":10,\"fields\":{}}" },
   { "a trailing comma after the object", "program -",
     "<stdin>:1:43: not valid JSON: unexpected ','; expected end of input",
     "{\"table\":\"LifTable\",\"chip\":10,\"fields\":{}}," },
   { "two objects on a line", "program -",
     "<stdin>:1:43: not valid JSON: unexpected '{'; expected end of input",
     "{\"table\":\"LifTable\",\"chip\":10,\"fields\":{}}{\"table\":\"LifTable\",\"chip\":10,"
     "\"fields\":{}}" },
   { "a comment of another kind", "program -", "<stdin>:1:1: not valid JSON: invalid literal",
     "// ports\n" },
   { "a value with a unit", "program -",
     "<stdin>:1:47: bad value \"10k\" for vsi; write decimal digits, hexadecimal digits after 0x, "
     "binary digits after 0b, an IPv4, IPv6 or MAC address, or mask",
     "{\"table\":\"LifTable\",\"chip\":10,\"fields\":{\"vsi\":\"10k\"}}" },
   { "an octal value", "program -",
     "<stdin>:1:47: bad value \"0777\" for vsi; a leading 0 may mean octal; write 777 or 0x1ff",
     "{\"table\":\"LifTable\",\"chip\":10,\"fields\":{\"vsi\":\"0777\"}}" },
   { "an octal address", "program -",
     "<stdin>:1:53: bad number \"010\" for address; a leading 0 may mean octal; write 10 or 0x8",
     "{\"table\":\"LifTable\",\"chip\":10,\"fields\":{},\"address\":\"010\"}" },
   { "an image of a byte", "program -",
     "<stdin>:1:39: the image has 1 bytes; the fields of LifTable on BCM88690_B0 variant 0 need "
     "23, a whole entry has 80",
     "{\"table\":\"LifTable\",\"chip\":10,\"image\":\"00\"}" },
   { "an image with a tag of none", "program -",
     "<stdin>:1:39: the image is not one of LifTable on BCM88690_B0 variant 0: its tag resultType "
     "is 0x3f, not 0x3a",
     "{\"table\":\"LifTable\",\"chip\":10,\"image\":"
     "\"fffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffff"
     "fffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffff\"}" },
   { "semicolons", "program --csv -", "<stdin>:1:6: semicolons between the cells; write commas",
     "table;chip;vsi\nLifTable;10;1\n" },
   { "utf-16", "program --csv -", "<stdin>:1:1: the file is UTF-16; save it as UTF-8",
     std::string( "\377\376t\000a\000b\000l\000e\000,\000c\000h\000i\000p\000,"
                  "\000v\000s\000i\000\n\000L\000i\000f\000T\000a\000b\000l\000e\000,"
                  "\0001\0000\000,\0001\000\n\000",
                  60 ) },
   { "a cell over two lines", "program --csv -",
     "<stdin>:2:13: the cell \"\"1\" has no closing quote; a cell ends on its line",
     "table,chip,vsi\nLifTable,10,\"1\n2\"\n" },
   { "a thousand with a comma", "program --csv -",
     "<stdin>:2:14: bad value \"1,000\" for vsi; did you mean 1000?",
     "table,chip,vsi\nLifTable,10,\"1,000\"\n" },
   { "a date made of a number", "program --csv -",
     "<stdin>:2:13: bad value \"2026-11-22\" for vsi; write a MAC address as 00-1c-73-00-00-01",
     "table,chip,vsi\nLifTable,10,2026-11-22\n" },
   { "a number in the floating form of a spreadsheet", "program --csv -",
     "<stdin>:2:13: bad value \"1.0E+03\" for vsi; write an IPv4 address as 10.0.0.1 or a MAC "
     "address as 001c.7300.0001",
     "table,chip,vsi\nLifTable,10,1.0E+03\n" },
   { "a formula's error", "program --csv -",
     "<stdin>:2:13: bad value \"#REF!\" for vsi; write decimal digits, hexadecimal digits after "
     "0x, binary digits after 0b, an IPv4, IPv6 or MAC address, or mask",
     "table,chip,vsi\nLifTable,10,#REF!\n" },
   { "a true of a spreadsheet", "program --csv -",
     "<stdin>:2:13: bad value \"TRUE\" for learnEnable; write decimal digits, hexadecimal digits "
     "after 0x, binary digits after 0b, an IPv4, IPv6 or MAC address, or mask",
     "table,chip,learnEnable\nLifTable,10,TRUE\n" },
};

const std::vector<Kind> encoded{
   { "encode field twice", "encode TcamActionTable --chip 10 action=1 action=2",
     "vorn: field action is given twice" },
   { "encode blank around =", "encode TcamActionTable --chip 10 action = 1",
     "vorn: bad argument \"action\"; write a field as name=value" },
   { "encode colon", "encode TcamActionTable --chip 10 action:1",
     "vorn: bad argument \"action:1\"; write a field as name=value" },
   { "encode ==", "encode TcamActionTable --chip 10 action==1",
     "vorn: bad value \"=1\" for action; write decimal digits, hexadecimal digits after 0x, binary "
     "digits after 0b, an IPv4, IPv6 or MAC address, or mask" },
   { "encode no value", "encode TcamActionTable --chip 10 action=",
     "vorn: bad value \"\" for action; write decimal digits, hexadecimal digits after 0x, binary "
     "digits after 0b, an IPv4, IPv6 or MAC address, or mask" },
   { "encode no name", "encode TcamActionTable --chip 10 =1",
     "vorn: no field \"\" in TcamActionTable on BCM88690_B0; allowed: action" },
   { "encode octal", "encode TcamActionTable --chip 10 action=010",
     "vorn: bad value \"010\" for action; a leading 0 may mean octal; write 10 or 0x8" },
   { "encode octal 8", "encode TcamActionTable --chip 10 action=08",
     "vorn: bad value \"08\" for action; a leading 0 may mean octal; write 8" },
   { "encode thousand", "encode TcamActionTable --chip 10 action=1,000",
     "vorn: bad value \"1,000\" for action; did you mean 1000?" },
   { "encode hex without 0x", "encode TcamActionTable --chip 10 action=12ab",
     "vorn: bad value \"12ab\" for action; did you mean 0x12ab?" },
   { "encode exponent", "encode TcamActionTable --chip 10 action=1e3",
     "vorn: bad value \"1e3\" for action; did you mean 0x1e3?" },
   { "encode fraction", "encode TcamActionTable --chip 10 action=1.5",
     "vorn: bad value \"1.5\" for action; write an IPv4 address as 10.0.0.1 or a MAC address as "
     "001c.7300.0001" },
   { "encode unit", "encode TcamActionTable --chip 10 action=10k",
     "vorn: bad value \"10k\" for action; write decimal digits, hexadecimal digits after 0x, "
     "binary digits after 0b, an IPv4, IPv6 or MAC address, or mask" },
   { "encode true", "encode TcamActionTable --chip 10 action=true",
     "vorn: bad value \"true\" for action; write decimal digits, hexadecimal digits after 0x, "
     "binary digits after 0b, an IPv4, IPv6 or MAC address, or mask" },
   { "encode quoted", "encode TcamActionTable --chip 10 action=\"1\"",
     "vorn: bad value \"\"1\"\" for action; write decimal digits, hexadecimal digits after 0x, "
     "binary digits after 0b, an IPv4, IPv6 or MAC address, or mask" },
   { "encode mask capital", "encode TcamActionTable --chip 10 action=MASK",
     "vorn: bad value \"MASK\" for action; did you mean mask?" },
   { "encode o prefix", "encode TcamActionTable --chip 10 action=0o17",
     "vorn: bad value \"0o17\" for action; write decimal digits, hexadecimal digits after 0x, "
     "binary digits after 0b, an IPv4, IPv6 or MAC address, or mask" },
   { "encode hash", "encode TcamActionTable --chip 10 action=#1",
     "vorn: bad value \"#1\" for action; write decimal digits, hexadecimal digits after 0x, binary "
     "digits after 0b, an IPv4, IPv6 or MAC address, or mask" },
   { "encode h suffix", "encode TcamActionTable --chip 10 action=10h",
     "vorn: bad value \"10h\" for action; write decimal digits, hexadecimal digits after 0x, "
     "binary digits after 0b, an IPv4, IPv6 or MAC address, or mask" },
   { "encode binary bad", "encode TcamActionTable --chip 10 action=0b12",
     "vorn: bad value \"0b12\" for action; did you mean 0x0b12?" },
   { "encode ip too many", "encode TcamBankIpv4Tt --chip 10 ipv4Dip=10.0.0.1.2",
     "vorn: bad value \"10.0.0.1.2\" for ipv4Dip; write an IPv4 address as 10.0.0.1 or a MAC "
     "address as 001c.7300.0001" },
   { "encode ip 256", "encode TcamBankIpv4Tt --chip 10 ipv4Dip=10.0.0.256",
     "vorn: bad value \"10.0.0.256\" for ipv4Dip; write an IPv4 address as 10.0.0.1 or a MAC "
     "address as 001c.7300.0001" },
   { "encode ip prefix", "encode TcamBankIpv4Tt --chip 10 ipv4Dip=10.0.0.0/8",
     "vorn: bad value \"10.0.0.0/8\" for ipv4Dip; write an address without a prefix length" },
   { "encode ip octal", "encode TcamBankIpv4Tt --chip 10 ipv4Dip=010.0.0.1",
     "vorn: bad value \"010.0.0.1\" for ipv4Dip; write an IPv4 address as 10.0.0.1 or a MAC "
     "address as 001c.7300.0001" },
   { "encode name hardware", "encode TcamActionTable --chip 10 ACTION=1",
     "vorn: no field \"ACTION\" in TcamActionTable on BCM88690_B0; did you mean action?" },
   { "encode from short", "encode TcamActionTable --chip 10 --from 4523",
     "vorn: --from: the image has 2 bytes; an entry of TcamActionTable on BCM88690_B0 has 8" },
   { "encode from long", "encode TcamActionTable --chip 10 --from 454545454545454545",
     "vorn: --from: the image has 9 bytes; an entry of TcamActionTable on BCM88690_B0 has 8" },
   { "encode from octal pair",
     "encode TcamActionTable --chip 10 --from 'TcamActionTable 010 0: 4523010000000000'",
     "vorn: --from: bad number \"010\" for chip; a leading 0 may mean octal; write 10 or 0x8" },
   { "encode from octal variant",
     "encode LifTable --chip 10 --from 'LifTable 10 03: "
     "000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000"
     "0000000000000000000000000000000000000000000000000000000000000000000'",
     "vorn: --from: bad number \"03\" for variant; a leading 0 may mean octal; write 3" },
   { "encode from empty", "encode TcamActionTable --chip 10 --from ''",
     "vorn: --from: the image has 0 bytes; an entry of TcamActionTable on BCM88690_B0 has 8" },
   { "encode entry octal", "encode TcamActionTable --chip 10 --entry 010",
     "vorn: bad number \"010\" for entry; a leading 0 may mean octal; write 10 or 0x8" },
   { "encode entry range", "encode TcamActionTable --chip 10 --entry 1-2",
     "vorn: bad number \"1-2\" for entry; write decimal digits, hexadecimal digits after 0x or "
     "binary digits after 0b" },
   { "encode unicode digit", "encode TcamActionTable --chip 10 action=\357\274\221",
     "vorn: bad value \"\357\274\221\" for action; write decimal digits, hexadecimal digits after "
     "0x, binary digits after 0b, an IPv4, IPv6 or MAC address, or mask" },
   { "encode NBSP", "encode TcamActionTable --chip 10 action=1\302\240",
     "vorn: bad value \"1\302\240\" for action; write decimal digits, hexadecimal digits after 0x, "
     "binary digits after 0b, an IPv4, IPv6 or MAC address, or mask" },
};

const std::vector<Kind> identified{
   { "identify words mixed", "identify --chip 10 0x12345 00",
     "vorn: an odd number of digits in \"0x12345\"; write two hexadecimal digits for each byte, "
     "entry byte 0 first" },
   { "identify octal chip", "identify --chip 010 00",
     "vorn: bad number \"010\" for chip; a leading 0 may mean octal; write 10 or 0x8" },
};

const std::vector<Kind> located{
   { "locate range backwards", "locate --chip 10 0x1101009-0x1101005",
     "vorn: range 0x1101009-0x1101005 of addresses ends before it begins; did you mean "
     "0x1101005-0x1101009?" },
   { "locate range no end", "locate --chip 10 0x1101005-",
     "vorn: bad range \"0x1101005-\" of addresses; write it as first-last" },
   { "locate octal", "locate --chip 10 010",
     "vorn: bad number \"010\" for address; a leading 0 may mean octal; write 10 or 0x8" },
   { "locate stdin octal", "locate --chip 10 -",
     "<stdin>:1:1: bad number \"017\" for address; a leading 0 may mean octal; write 17 or 0xf",
     "017\n" },
   { "locate plus", "locate --chip 10 +5", "vorn: bad number \"+5\" for address; did you mean 5?" },
   { "locate hex without 0x", "locate --chip 10 1101a05",
     "vorn: bad number \"1101a05\" for address; did you mean 0x1101a05?" },
   { "locate comma", "locate --chip 10 0x5,0x6",
     "vorn: bad number \"0x5,0x6\" for address; write hexadecimal digits after 0x" },
   { "locate negative", "locate --chip 10 -- -5",
     "vorn: negative value -5 for address; a value is 0 or more" },
   { "locate empty", "locate --chip 10 ''",
     "vorn: bad number \"\" for address; write decimal digits, hexadecimal digits after 0x or "
     "binary digits after 0b" },
   { "locate range of three", "locate --chip 10 1-2-3",
     "vorn: bad number \"2-3\" for address; write decimal digits, hexadecimal digits after 0x or "
     "binary digits after 0b" },
   { "locate range beyond", "locate --chip 10 0xfffffff0-0x100000000",
     "vorn: address 0x100000000 is out of range; it is at most 4294967295" },
   { "locate dest-block negative", "locate --chip 10 --dest-block -1 0",
     "vorn: negative value -1 for dest-block; a value is 0 or more" },
   { "locate dest-block octal", "locate --chip 10 --dest-block 06 0x1101005",
     "vorn: bad number \"06\" for dest-block; a leading 0 may mean octal; write 6" },
};

const std::vector<Kind> found{
   { "field misspelt", "field vlanDomian",
     "vorn: no table has a field \"vlanDomian\"; did you mean vlanDomain?" },
   { "field none", "field zzzz", "vorn: no table has a field \"zzzz\"" },
   { "field id none", "field 99999", "vorn: no field has the identifier 99999" },
   { "field octal id", "field 0351",
     "vorn: bad number \"0351\" for identifier; a leading 0 may mean octal; write 351 or 0xe9" },
   { "field an id that goes on", "field 351x",
     "vorn: bad number \"351x\" for identifier; write decimal digits, hexadecimal digits after 0x "
     "or binary digits after 0b" },
   { "field pattern none", "field zz*", "vorn: no field matches \"zz*\"" },
   { "field empty", "field ''", "vorn: no table has a field \"\"" },
   { "field chip lacks", "field isemPayload --chip 10",
     "vorn: no table has the field \"isemPayload\" on BCM88690_B0; it exists on BCM88650_B0 (2), "
     "BCM88660_A0 (3), BCM88375_A0 (4), BCM88375_B0 (5), BCM88470_A0 (6), BCM88470_B0 (7), "
     "BCM88680_A0 (8)" },
   { "field chip misspelt", "field vsi --chip BCM88690",
     "vorn: unknown chip \"BCM88690\"; did you mean BCM88690_B0?" },
   { "field two", "field vsi vrf", "vorn: unexpected argument \"vrf\"; see vorn field --help", "",
     2 },
   { "field table name", "field LifTable", "vorn: no table has a field \"LifTable\"" },
   { "field blank", "field 'vlan domain'",
     "vorn: no table has a field \"vlan domain\"; did you mean vlanDomain?" },
   { "field class member", "field LifTable.vsi", "vorn: no table has a field \"LifTable.vsi\"" },
   { "field none chip octal", "field vsi --chip 010",
     "vorn: bad number \"010\" for chip; a leading 0 may mean octal; write 10 or 0x8" },
};

const std::vector<Kind> drawn{
   { "layout misspelt", "layout LifTabel --chip 10",
     "vorn: unknown table \"LifTabel\"; did you mean LifTable?" },
   { "layout octal variant", "layout LifTable --chip 10 --variant 01",
     "vorn: bad number \"01\" for variant; a leading 0 may mean octal; write 1" },
   { "layout variant none", "layout LifTable --chip 10 --variant 77",
     "vorn: LifTable has no variant 77 on BCM88690_B0; allowed: 0-4,6-11" },
   { "layout lower case", "layout liftable --chip 10",
     "vorn: unknown table \"liftable\"; did you mean LifTable?" },
};

std::vector<std::string> wordsOf( const std::string& command ) {
   std::vector<std::string> words( 1 );
   bool isQuoted = false;
   for( const char c : command ) {
      if( c == '\'' ) {
         isQuoted = !isQuoted;
      } else if( c == ' ' && !isQuoted ) {
         words.emplace_back();
      } else {
         words.back() += c;
      }
   }
   return words;
}

void expectAll( const std::vector<Kind>& kinds ) {
   for( const Kind& kind : kinds ) {
      SCOPED_TRACE( kind.what );
      const auto outcome = Testing::vorn( wordsOf( kind.command ), kind.input );
      EXPECT_EQ( outcome.err, kind.message + '\n' );
      EXPECT_EQ( outcome.status, kind.status );
      EXPECT_EQ( !outcome.out.empty(), kind.hasPrinted ) << outcome.out;
   }
}

} // namespace

TEST( BadKinds, decoded ) { expectAll( decoded ); }
TEST( BadKinds, compared ) { expectAll( compared ); }
TEST( BadKinds, counted ) { expectAll( counted ); }
TEST( BadKinds, programmed ) { expectAll( programmed ); }
TEST( BadKinds, encoded ) { expectAll( encoded ); }
TEST( BadKinds, identified ) { expectAll( identified ); }
TEST( BadKinds, located ) { expectAll( located ); }
TEST( BadKinds, found ) { expectAll( found ); }
TEST( BadKinds, drawn ) { expectAll( drawn ); }
