#pragma once
// The runtime's message texts. Messages are filled with Format() from SysUtils.h;
// the texts are what users of the original runtime know, so keep them word for word.

namespace RtlConsts {

// Streams and files
inline constexpr const char* SInvalidImage = "Invalid stream format";          // no resource header, no "TPF0"
inline constexpr const char* SReadError = "Stream read error";                 // data ends inside a value
inline constexpr const char* SWriteError = "Stream write error";               // a write that did not complete
inline constexpr const char* SFCreateError = "Cannot create file %s";          // file name
inline constexpr const char* SFOpenError = "Cannot open file %s";              // file name
inline constexpr const char* SMemoryStreamError = "Out of memory while expanding memory stream";  // size too big
inline constexpr const char* SSeekNotImplemented = "Stream does not support seeking";  // pipes and the like

// Reading and writing components
inline constexpr const char* SClassNotFound = "Class %s not found";            // class name
inline constexpr const char* SUnknownProperty = "Property %s does not exist";  // property name
inline constexpr const char* SPropertyException = "Error reading %s.%s: %s";   // object, property, message
inline constexpr const char* SDuplicateName = "A component named %s already exists";  // component name
inline constexpr const char* SInvalidName = "'%s' is not a valid component name";    // component name
inline constexpr const char* SDuplicateClass = "A class named %s already exists";    // class name
inline constexpr const char* SInvalidPropertyValue = "Invalid property value";       // wrong value type
inline constexpr const char* SInvalidPropertyPath = "Invalid property path";         // dotted name that leads nowhere
inline constexpr const char* SInvalidPropertyType = "Invalid property type: %s";     // type name
inline constexpr const char* SInvalidPropertyElement = "Invalid property element: %s";  // set or enum element
inline constexpr const char* SReadOnlyProperty = "Property is read-only";            // setter missing
inline constexpr const char* SAncestorNotFound = "Ancestor for '%s' not found";      // component name
inline constexpr const char* SMethodNotFound = "Method %s not found";                // handler name (our text)
inline constexpr const char* SInvalidValueType = "Invalid value type %d";            // a type byte above 21 (our text)
inline constexpr const char* SNestingTooDeep = "Nesting too deep (more than %d levels)";  // bound on nesting (our text)
inline constexpr const char* SStringTooLong = "String too long for its value type (%u bytes)";  // a write past a length field (our text)

// Form text parser; parser errors end in " on line N" through SParseError
inline constexpr const char* SParseError = "%s on line %d";                    // what, one-based line
inline constexpr const char* SIdentifierExpected = "Identifier expected";
inline constexpr const char* SStringExpected = "String expected";
inline constexpr const char* SNumberExpected = "Number expected";
inline constexpr const char* SCharExpected = "'%s' expected";                  // the expected character
inline constexpr const char* SSymbolExpected = "%s expected";                  // the expected keyword ("end")
inline constexpr const char* SInvalidBinary = "Invalid binary value";
inline constexpr const char* SInvalidString = "Invalid string constant";
inline constexpr const char* SInvalidNumber = "Invalid numeric value";           // a number that does not fit its type

// Lists, collections and components
inline constexpr const char* SListIndexError = "List index out of bounds (%d)";  // index
inline constexpr const char* SListCapacityError = "List capacity out of bounds (%d)";
inline constexpr const char* SListCountError = "List count out of bounds (%d)";
inline constexpr const char* SSortedListError = "Operation not allowed on sorted string list";
inline constexpr const char* SDuplicateString = "String list does not allow duplicates";
inline constexpr const char* SDuplicateItem = "List does not allow duplicates ($0%x)";
inline constexpr const char* SAssignError = "Cannot assign a %s to a %s";          // source class, destination class
inline constexpr const char* SInvalidOperation = "Invalid operation";              // generic refusal
inline constexpr const char* SOutOfResources = "Out of system resources";

// Conversions
inline constexpr const char* SInvalidInteger = "'%s' is not a valid integer value";        // text
inline constexpr const char* SInvalidFloat = "'%s' is not a valid floating point value";  // text
inline constexpr const char* SInvalidBoolean = "'%s' is not a valid boolean value";       // text

}  // namespace RtlConsts
