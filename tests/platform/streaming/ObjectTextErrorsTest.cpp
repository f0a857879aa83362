#include "platform/streaming/ObjectText.h"
#include "platform/streaming/Values.h"

#include <gtest/gtest.h>

namespace {

// The message of the parser error that `text` gives, or "(no error)".
std::string ParseError(const std::string& text) {
  try {
    ObjectTextToBinary(text);
  } catch (const EParserError& e) {
    return e.Message();
  } catch (const Exception& e) {
    return "wrong class: " + e.Message();
  }
  return "(no error)";
}

// The message of the error that reading a binary stream gives, or "(no error)".
template <class F>
std::string StreamError(F&& read) {
  try {
    read();
  } catch (const EReadError& e) {
    return e.Message();
  } catch (const EInvalidImage& e) {
    return "EInvalidImage: " + e.Message();
  } catch (const Exception& e) {
    return "wrong class: " + e.Message();
  }
  return "(no error)";
}

// The message of the error that binary -> text gives, or "(no error)".
std::string ReadError(const std::string& stream) {
  return StreamError([&] { ObjectBinaryToText(stream); });
}

TEST(ParserErrors, IdentifierExpected) {
  EXPECT_EQ(ParseError("object 123\r\nend"), "Identifier expected on line 1");
  EXPECT_EQ(ParseError("object Form1: TForm1\r\n  Left = 1\r\n  = 5\r\nend"), "Identifier expected on line 3");
  EXPECT_EQ(ParseError("object Form1: \r\n\r\n  'x'\r\nend"), "Identifier expected on line 3");
  EXPECT_EQ(ParseError("object A: TA\r\n  Style = [a, 5]\r\nend"), "Identifier expected on line 2");
  EXPECT_EQ(ParseError("object A: TA\r\n  Font. = 1\r\nend"), "Identifier expected on line 2");
  EXPECT_EQ(ParseError(""), "Identifier expected on line 1");
  EXPECT_EQ(ParseError("\r\n\r\n"), "Identifier expected on line 3");
}

TEST(ParserErrors, StringExpected) {
  EXPECT_EQ(ParseError("object A: TA\r\n  Caption = 'a' +\r\n    5\r\nend"), "String expected on line 3");
  EXPECT_EQ(ParseError("object A: TA\r\n  Caption = 'a' +\r\nend"), "String expected on line 3");
  EXPECT_EQ(ParseError("object A: TA\r\n  Caption = 'a' +"), "String expected on line 2");
}

TEST(ParserErrors, NumberExpected) {
  EXPECT_EQ(ParseError("object A: TA [x]\r\nend"), "Number expected on line 1");
  EXPECT_EQ(ParseError("object A: TA\r\n  Cols = <\r\n    item [b]\r\n    end>\r\nend"), "Number expected on line 3");
  EXPECT_EQ(ParseError("object A: TA\r\n  Tag = $\r\nend"), "Number expected on line 2");
}

TEST(ParserErrors, CharExpected) {
  EXPECT_EQ(ParseError("object A: TA\r\n  Left 5\r\nend"), "'=' expected on line 2");
  EXPECT_EQ(ParseError("object A: TA\r\n  Left\r\n\r\n  Top = 5\r\nend"), "'=' expected on line 4");
  EXPECT_EQ(ParseError("object A: TA [1\r\nend"), "']' expected on line 2");
  EXPECT_EQ(ParseError("object A: TA\r\n  Style = [a b]\r\nend"), "',' expected on line 2");
  EXPECT_EQ(ParseError("object A: TA\r\n  Items = (\r\n    'a'"), "')' expected on line 3");
  EXPECT_EQ(ParseError("object A: TA\r\n  Cols = <"), "'>' expected on line 2");
}

TEST(ParserErrors, KeywordExpected) {
  EXPECT_EQ(ParseError("object A: TA\r\n  Left = 1\r\n"), "end expected on line 3");
  EXPECT_EQ(ParseError("object A: TA\r\n  object B: TB\r\n  end\r\n  Left = 1\r\nend"), "end expected on line 4");
  EXPECT_EQ(ParseError("form A: TA\r\nend"), "object expected on line 1");
  EXPECT_EQ(ParseError("object A: TA\r\n  Cols = <\r\n    thing\r\n    end>\r\nend"), "item expected on line 3");
  EXPECT_EQ(ParseError("object A: TA\r\n  Cols = <\r\n    item\r\n      Tag = 1\r\n"), "end expected on line 5");
}

TEST(ParserErrors, InvalidBinaryValue) {
  EXPECT_EQ(ParseError("object A: TA\r\n  Data = {01G2}\r\nend"), "Invalid binary value on line 2");
  EXPECT_EQ(ParseError("object A: TA\r\n  Data = {\r\n    0102\r\n    030}\r\nend"), "Invalid binary value on line 4");
  EXPECT_EQ(ParseError("object A: TA\r\n  Data = {\r\n    0102\r\n"), "Invalid binary value on line 4");
}

TEST(ParserErrors, InvalidStringConstant) {
  EXPECT_EQ(ParseError("object A: TA\r\n  Caption = 'abc\r\n  Left = 1\r\nend"), "Invalid string constant on line 2");
  EXPECT_EQ(ParseError("object A: TA\r\n  Caption = 'abc"), "Invalid string constant on line 2");
  EXPECT_EQ(ParseError("object A: TA\r\n\r\n  Caption = #\r\nend"), "Invalid string constant on line 3");
  EXPECT_EQ(ParseError("object A: TA\r\n  Caption = #65536\r\nend"), "Invalid string constant on line 2");
}

TEST(ParserErrors, InvalidPropertyValue) {
  EXPECT_EQ(ParseError("object A: TA\r\n  Left = 1\r\n  Top = @\r\nend"), "Invalid property value on line 3");
  EXPECT_EQ(ParseError("object A: TA\r\n  Left = -\r\nend"), "Invalid property value on line 2");
  EXPECT_EQ(ParseError("object A: TA\r\n  Left = )\r\nend"), "Invalid property value on line 2");
}

TEST(ParserErrors, NumbersOutOfRange) {
  EXPECT_EQ(ParseError("object A: TA\r\n  Tag = 99999999999999999999\r\nend"),
            "'99999999999999999999' is not a valid integer value on line 2");
  EXPECT_EQ(ParseError("object A: TA\r\n  Tag = 9223372036854775808\r\nend"),
            "'9223372036854775808' is not a valid integer value on line 2");
  EXPECT_EQ(ParseError("object A: TA\r\n  Tag = -9223372036854775808\r\nend"), "(no error)");
  EXPECT_EQ(ParseError("object A: TA\r\n  Tag = $10000000000000000\r\nend"),
            "'$10000000000000000' is not a valid integer value on line 2");
  EXPECT_EQ(ParseError("object A: TA [99999999999]\r\nend"), "'99999999999' is not a valid integer value on line 1");
  EXPECT_EQ(ParseError("object A: TA\r\n  Price = 1E30c\r\nend"), "'1E30' is not a valid floating point value on line 2");
}

TEST(ParserErrors, TextAfterTheLastEnd) {
  EXPECT_EQ(ParseError("object A: TA\r\nend\r\nobject B: TB\r\nend\r\n"), "End of text expected on line 3");
  EXPECT_EQ(ParseError("object A: TA\r\nend\r\n\r\n \t\r\n"), "(no error)");
}

TEST(ParserErrors, NamesLongerThanTheFormatHolds) {
  const std::string longName(256, 'N');
  EXPECT_EQ(ParseError("object A: " + longName + "\r\nend"), "Identifier expected on line 1");
  EXPECT_EQ(ParseError("object A: TA\r\n  " + longName + " = 1\r\nend"), "Identifier expected on line 2");
  EXPECT_EQ(ParseError("object A: TA\r\n  Color = " + longName + "\r\nend"), "Identifier expected on line 2");
  EXPECT_EQ(ParseError("object A: " + std::string(255, 'N') + "\r\nend"), "(no error)");
}

TEST(ParserErrors, NestingIsBounded) {
  std::string lists = "object A: TA\r\n  Items = ";
  for (int i = 0; i < 2000; ++i) lists += "(";
  EXPECT_EQ(ParseError(lists), "Nesting too deep (more than 1000 levels) on line 2");
  std::string objects;
  for (int i = 0; i < 2000; ++i) objects += "object A: TA\n";
  EXPECT_EQ(ParseError(objects), "Nesting too deep (more than 1000 levels) on line 1002");
  std::string collections = "object A: TA\r\n  Items = ";
  for (int i = 0; i < 2000; ++i) collections += "< item X = ";
  EXPECT_EQ(ParseError(collections).substr(0, 40), "Nesting too deep (more than 1000 levels)");
}

TEST(ParserErrors, MessagesKeepTheirShapeForTheEditor) {
  // The editor finds the line number after "line " in the message.
  const std::string message = ParseError("object A: TA\n\n\n\n\n\n\n\n\n\n\n  Left 1\nend");
  EXPECT_EQ(message, "'=' expected on line 12");
  EXPECT_EQ(message.substr(message.rfind("line ") + 5), "12");
}

// --- binary ---------------------------------------------------------------

std::string Stream(std::string_view body) { return std::string("TPF0") + std::string(body); }

TEST(BinaryErrors, NoSignature) {
  EXPECT_EQ(ReadError("TPF1\x06TForm1\x05" "Form1\x00\x00"), "EInvalidImage: Invalid stream format");
  EXPECT_EQ(ReadError(""), "EInvalidImage: Invalid stream format");
  EXPECT_EQ(ReadError("object A: TA end"), "EInvalidImage: Invalid stream format");
}

TEST(BinaryErrors, DataEndingEarlyNamesWhere) {
  EXPECT_EQ(ReadError(Stream("")), "Stream read error at byte 4");
  EXPECT_EQ(ReadError(Stream("\x06TForm1\x05" "Form1")), "Stream read error at byte 17 (Form1)");
  EXPECT_EQ(ReadError(Stream(std::string("\x06TForm1\x05" "Form1\x07" "Caption\x06\x05" "ab", 25))),
            "Stream read error at byte 27 (Form1.Caption)");
  EXPECT_EQ(ReadError(Stream(std::string("\x06TForm1\x05" "Form1\x00\x07TButton\x07" "Button1\x04Left\x03\x01", 36))),
            "Stream read error at byte 40 (Form1.Button1.Left)");
}

TEST(BinaryErrors, UnknownValueTypeIsNamed) {
  EXPECT_EQ(ReadError(Stream(std::string("\x06TForm1\x05" "Form1\x04Left\x16\x00\x00", 20))),
            "Invalid property value (value type 22) at byte 22 (Form1.Left)");
  EXPECT_EQ(ReadError(Stream(std::string("\x06TForm1\x05" "Form1\x04Left\x00\x00\x00", 20))),
            "Invalid property value (value type 0) at byte 22 (Form1.Left)");
}

TEST(BinaryErrors, AbsurdLengthsFailAtOnce) {
  // A binary value, a long string, a wide string and a UTF-8 string claiming 4 GB.
  for (char type : {'\x0A', '\x0C', '\x12', '\x14'}) {
    std::string body("\x06TForm1\x05" "Form1\x04" "Data", 18);
    body += type;
    body += "\xFF\xFF\xFF\xFF";
    body += std::string(10, 'x');
    EXPECT_EQ(ReadError(Stream(body)), "Stream read error at byte 27 (Form1.Data)") << int(type);
  }
}

TEST(BinaryErrors, NestingIsBounded) {
  std::string body("\x06TForm1\x05" "Form1\x05Items", 19);
  body += std::string(3000, '\x01');
  EXPECT_EQ(ReadError(Stream(body)).substr(0, 40), "Nesting too deep (more than 1000 levels)");
  std::string components;
  for (int i = 0; i < 3000; ++i) components += std::string("\x02TA\x01" "A\x00", 6);
  EXPECT_EQ(ReadError(Stream(components)).substr(0, 40), "Nesting too deep (more than 1000 levels)");
}

TEST(BinaryErrors, ChildPositionMustBeAnInteger) {
  EXPECT_EQ(ReadError(Stream("\xF2\x06" "abc")), "Invalid property value at byte 6");
}

TEST(BinaryErrors, ResourceWithoutHeader) {
  try {
    ObjectResourceToText("TPF0");
    FAIL() << "no error";
  } catch (const EInvalidImage& e) {
    EXPECT_EQ(e.Message(), "Invalid stream format");
  }
}

}  // namespace

namespace {

// The message of the error that checking a stream gives, or "(no error)".
std::string CheckError(const std::string& stream) {
  return StreamError([&] { CheckObjectBinary(stream); });
}

// A checked stream fails exactly where and as its conversion to text fails: every cut of
// a stream holding every kind of value, and every byte of it changed.
TEST(ReadErrors, CheckingAStreamGivesTheErrorsOfItsConversion) {
  const std::string stream = ObjectTextToBinary(
      "object Form1: TForm1\r\n"
      "  Left = 192\r\n"
      "  Tag = -70000\r\n"
      "  Big = 10000000000\r\n"
      "  Ratio = 1.5\r\n"
      "  Single = 2.5s\r\n"
      "  Money = 3.25c\r\n"
      "  When = 36526d\r\n"
      "  Caption = 'Form1'\r\n"
      "  Wide = 'a'#1234'b'\r\n"
      "  Flag = True\r\n"
      "  Other = False\r\n"
      "  Color = clBtnFace\r\n"
      "  Link = nil\r\n"
      "  Style = [fsBold, fsItalic]\r\n"
      "  Data = {0102030405}\r\n"
      "  Items.Strings = (\r\n    'one'\r\n    'two')\r\n"
      "  Columns = <\r\n    item\r\n      Width = 5\r\n    end\r\n    item [2]\r\n    end>\r\n"
      "  object Button1: TButton [1]\r\n    Caption = 'OK'\r\n  end\r\n"
      "  inherited Panel1: TPanel\r\n  end\r\n"
      "end\r\n");
  EXPECT_EQ(CheckError(stream), "(no error)");
  for (std::size_t cut = 0; cut < stream.size(); ++cut) {
    const std::string part = stream.substr(0, cut);
    ASSERT_EQ(CheckError(part), ReadError(part)) << "cut at " << cut;
  }
  for (std::size_t at = 0; at < stream.size(); ++at) {
    std::string changed = stream;
    changed[at] = static_cast<char>(changed[at] ^ 0x5A);
    ASSERT_EQ(CheckError(changed), ReadError(changed)) << "byte " << at;
  }
}

}  // namespace
