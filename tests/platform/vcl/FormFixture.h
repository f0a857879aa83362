#pragma once
// The fixture of the widget tests that build a form in code: an empty form owned by the
// application, shown on demand, and controls made on it.

#include "platform/vcl/Dialogs.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/VclClasses.h"

#include <QApplication>

#include <gtest/gtest.h>

namespace lumora::test {

class TFormFixture : public ::testing::Test {
protected:
  void SetUp() override {
    Application->Initialize();
    RegisterVclClasses();
    form = new TForm(Application);
    form->SetName("TestForm");
    form->SetBounds(10, 10, 400, 300);
  }
  void TearDown() override {
    delete form;
    Application->OnMessage = nullptr;
    Application->OnException = nullptr;
    Application->OnIdle = nullptr;
    ClearNextAnswers();
    SetUserQuestionHook(nullptr);
  }
  // Shows the form and lets it become the active window.
  void ShowForm() {
    form->Show();
    QApplication::setActiveWindow(form->Widget());
    QApplication::processEvents();
  }
  // A control of the form, on `parent`.
  template <class T>
  T* Make(TWinControl* parent, int left, int top, int width, int height) {
    auto* c = new T(form);
    c->SetParent(parent);
    c->SetBounds(left, top, width, height);
    return c;
  }
  template <class T>
  T* Make(const char* name, TWinControl* parent, int left, int top, int width, int height) {
    T* c = Make<T>(parent, left, top, width, height);
    c->SetName(name);
    return c;
  }
  QRect WidgetRect(TControl* c) { return c->Widget()->geometry(); }
  TForm* form = nullptr;
};

}  // namespace lumora::test
