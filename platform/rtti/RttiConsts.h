#pragma once
// Message texts of the component model that the streaming layer's table does not hold.

namespace RttiConsts {

inline constexpr const char* SInvalidVarCast = "Invalid variant type conversion";
inline constexpr const char* SAbstractClass = "Cannot create an instance of class %s";      // class name (our text)
inline constexpr const char* SMethodTypeMismatch = "Method %s does not fit event %s";       // handler, event type (our text)
inline constexpr const char* SUnresolvedReference = "Component %s not found";              // a reference no component answers (our text)
inline constexpr const char* SReaderNestingTooDeep = "Components nested too deep (more than %d levels)";  // (our text)

}  // namespace RttiConsts
