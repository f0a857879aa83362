#pragma once
// What forms and the application object share inside the controls layer.

#include "platform/vcl/Application.h"
#include "platform/vcl/ControlWidgets.h"

// The application and screen objects once made; forms look at them without making them.
extern TApplication* gApplication;
extern TScreen* gScreen;
