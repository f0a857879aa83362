#include "platform/rtti/Filer.h"

#include "platform/rtti/ClassBuilder.h"

LUMORA_CLASS_IMPL(TFiler) {}
