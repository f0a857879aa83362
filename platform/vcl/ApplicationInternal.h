#pragma once
// What forms and the application object share inside the controls layer.

#include "platform/vcl/Application.h"
#include "platform/vcl/MessageLoop.h"

#include <functional>

// Runs a handler the way the event loop runs one: an exception goes to the application.
inline void Guard(const std::function<void()>& fn) { TMessageLoop::Instance().Guarded(fn); }

// The application and screen objects once made; forms look at them without making them.
extern TApplication* gApplication;
extern TScreen* gScreen;
