#pragma once
// What the form-text editor's widget tests share: a shown form holding the control under
// test, keys typed into it, and the questions asked through the dialog seams.

#include "platform/rtti/Classes.h"
#include "platform/vcl/Dialogs.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/VclClasses.h"
#include "textedit/DFM_ResEdit.h"
#include "textedit/joRichEdit.h"

#include <Qsci/qsciscintillabase.h>

#include <QApplication>
#include <QTest>

#include <gtest/gtest.h>

#include <string>

namespace lumora::test {

class EditorFormTest : public ::testing::Test {
protected:
  void SetUp() override {
    Application->Initialize();
    RegisterVclClasses();
    ClearNextAnswers();
    ClearAskedQuestions();
    SetUserQuestionHook([](const TUserQuestion&) { return static_cast<int>(mrOk); });
    form = new TForm(Application);
    form->SetBounds(0, 0, 640, 480);
  }
  void TearDown() override {
    delete form;
    form = nullptr;
    SetUserQuestionHook({});
    ClearNextAnswers();
    QApplication::processEvents();
  }
  void ShowForm() {
    form->Show();
    QApplication::setActiveWindow(form->Widget());
    QApplication::processEvents();
  }
  // The texts of the questions asked so far.
  static std::vector<std::string> QuestionTexts() {
    std::vector<std::string> texts;
    for (const TUserQuestion& q : AskedQuestions()) texts.push_back(q.Text);
    return texts;
  }
  TForm* form = nullptr;
};

// The widget of a rich edit, where keys and clicks go.
inline QsciScintillaBase* View(TjoRichEdit* edit) { return static_cast<QsciScintillaBase*>(edit->Widget()); }

// Types text into a widget, key by key.
inline void Type(QWidget* widget, const std::string& text) {
  for (const char c : text) {
    if (c == '\n') {
      QTest::keyClick(widget, Qt::Key_Return);
    } else {
      QTest::keyClicks(widget, QString(QChar(c)));
    }
  }
}

}  // namespace lumora::test
