// The main window driven as a user drives it: its banner and editor faces, menus, keys,
// settings kept between runs, the command line, drops and the relay.
#include "tests/shell/MainWindowTestUtil.h"


// ---- The window and its menus -----------------------------------------------------------

TEST_F(MainWindowTest, StartsAsTheBannerWithItsTitle) {
  Start();
  EXPECT_EQ(form->Name(), "Frm_mLumora");
  EXPECT_EQ(form->Caption(), "Lumora");
  EXPECT_EQ(Application->Title(), "Lumora");
  EXPECT_EQ(form->FAppTitle, "Lumora");
  EXPECT_EQ(form->Width(), kBannerWidth);
  EXPECT_EQ(form->Height(), kBannerHeight);
  EXPECT_FALSE(form->FEditorShown);
  EXPECT_EQ(form->Label1->Caption(), "Lumora");
  EXPECT_EQ(form->Label1->Align(), alClient);
  EXPECT_EQ(form->Label1->Font()->Color(), clGreen);
  EXPECT_TRUE(form->Label1->Font()->Style().Contains(fsBold));
  EXPECT_EQ(form->Label1->Font()->Height(), -24);
  EXPECT_EQ(form->Label2->Align(), alBottom);
  EXPECT_EQ(form->OpenDialog->Filter(), "Delphi DFM-files|*.dfm|Delphi programs|*.exe;*.dll;*.bpl");
  EXPECT_EQ(form->SaveDialog->Filter(),
            "Delphi Form (*.DFM)|*.DFM|RC resource script (*.RC)|*.RC|Text file (*.TXT)|*.TXT");
  // The relay window: hidden, named and captioned.
  ASSERT_NE(form->RelayWindow(), nullptr);
  EXPECT_EQ(form->RelayWindow()->Name(), "WOW");
  EXPECT_EQ(form->RelayWindow()->Caption(), "Lumora");
  EXPECT_FALSE(form->RelayWindow()->Visible());
  EXPECT_TRUE(form->RelayWindow()->Listener()->Listening());
}

TEST_F(MainWindowTest, TheMenusHaveTheirCaptionsShortcutsAndOrder) {
  Start();
  TMenuItem* bar = form->MainMenu->Items();
  ASSERT_EQ(bar->Count(), 5);
  const std::vector<std::string> tops = {"&File  ", "&View  ", "&Options  ", "&Window List  ", "&Help  "};
  for (int i = 0; i < 5; ++i) EXPECT_EQ(bar->Items(i)->Caption(), tops[i]) << i;
  EXPECT_EQ(bar->Items(0)->GroupIndex(), 1);
  EXPECT_EQ(bar->Items(1)->GroupIndex(), 1);
  EXPECT_EQ(bar->Items(2)->GroupIndex(), 10);
  EXPECT_EQ(bar->Items(3)->GroupIndex(), 10);
  EXPECT_EQ(bar->Items(4)->GroupIndex(), 10);
  TMenuItem* file = form->bmi_File;
  const std::vector<std::pair<std::string, std::string>> fileItems = {
      {"Open as &Form", "F3"}, {"Open as &Text", "F4"}, {"-", ""}, {"&Save As ...", ""}, {"-", ""},
      {"&Hide Viewer", "Esc"}, {"-", ""}, {"E&xit", "Alt+X"}};
  ASSERT_EQ(file->Count(), static_cast<int>(fileItems.size()));
  for (int i = 0; i < file->Count(); ++i) {
    EXPECT_EQ(file->Items(i)->Caption(), fileItems[i].first) << i;
    EXPECT_EQ(ShortCutToText(file->Items(i)->ShortCut()), fileItems[i].second) << i;
  }
  EXPECT_EQ(file->Items(2), form->mi_FileDlmN);
  EXPECT_EQ(form->bmi_View->Items(0)->Caption(), "&View as Form");
  EXPECT_EQ(ShortCutToText(form->mi_ViewAsForm->ShortCut()), "F12");
  EXPECT_EQ(form->mi_ViewWindowList->Caption(), "Window List ...");
  EXPECT_EQ(ShortCutToText(form->mi_ViewWindowList->ShortCut()), "Alt+0");
  EXPECT_EQ(form->mi_OptionsProperties->Caption(), "&General");
  EXPECT_EQ(form->mi_OptionsFormViewer->Caption(), "&Form Viewer");
  EXPECT_EQ(form->mi_OptionsPackages->Caption(), "P&ackages");
  EXPECT_EQ(form->mi_HelpHelp->Caption(), "&Help Topics");
  EXPECT_EQ(form->mi_HelpAbout->Caption(), "&About");
  // Enabled states of the banner.
  EXPECT_FALSE(form->mi_FileSaveAs->Enabled());
  EXPECT_FALSE(form->mi_ViewAsForm->Enabled());
  EXPECT_FALSE(form->mi_ViewWindowList->Enabled());
  EXPECT_FALSE(form->bmi_View->Enabled());
  EXPECT_FALSE(form->bmi_WinList->Enabled());
  EXPECT_TRUE(form->bmi_Options->Enabled());
  // The menu bar shows them.
  QMenuBar* qbar = form->MainMenu->MenuBar();
  ASSERT_NE(qbar, nullptr);
  ASSERT_EQ(qbar->actions().size(), 5);
  EXPECT_FALSE(qbar->actions()[1]->isEnabled());
}

TEST_F(MainWindowTest, HelpTopicsSaysThereIsNoHelp) {
  Start();
  PushNextAnswer(IDOK);
  form->mi_HelpHelp->Click();
  ASSERT_EQ(AskedQuestions().size(), 1u);
  EXPECT_EQ(AskedQuestions()[0].Text, "Sorry!!!\rHelp system in work...");
  EXPECT_EQ(AskedQuestions()[0].Caption, "Lumora");
  EXPECT_EQ(AskedQuestions()[0].Flags, MB_OK | MB_ICONINFORMATION);
}

// ---- The banner -----------------------------------------------------------------------------

TEST_F(MainWindowTest, TheBannerCannotBeResized) {
  Start();
  EXPECT_EQ(form->Constraints()->MinWidth(), kBannerWidth);
  EXPECT_EQ(form->Constraints()->MaxWidth(), kBannerWidth);
  EXPECT_EQ(form->Constraints()->MinHeight(), kBannerHeight);
  EXPECT_EQ(form->Constraints()->MaxHeight(), kBannerHeight);
  QWidget* w = form->Widget();
  EXPECT_EQ(w->minimumSize(), w->maximumSize());
  w->resize(w->width() + 200, w->height() + 100);
  QApplication::processEvents();
  EXPECT_EQ(form->Width(), kBannerWidth);
  EXPECT_EQ(form->Height(), kBannerHeight);
}

TEST_F(MainWindowTest, MaximiseDoesNothingOnTheBannerAndMaximisesTheEditor) {
  Start();
  // From the window's menu.
  EXPECT_EQ(SendMessage(form, WM_SYSCOMMAND, SC_MAXIMIZE), 0);
  QApplication::processEvents();
  EXPECT_FALSE(form->Widget()->isMaximized());
  EXPECT_EQ(form->WindowState(), wsNormal);
  // From the title bar (the window system's own maximise).
  form->Widget()->showMaximized();
  QApplication::processEvents();
  EXPECT_FALSE(form->Widget()->isMaximized());
  EXPECT_EQ(form->Width(), kBannerWidth);
  // With the editor shown, the same commands maximise.
  form->ShowEditor(dir / "Form1.dfm");
  SendMessage(form, WM_SYSCOMMAND, SC_MAXIMIZE);
  QApplication::processEvents();
  EXPECT_TRUE(form->Widget()->isMaximized());
  EXPECT_EQ(form->WindowState(), wsMaximized);
  form->HideEditor();
  QApplication::processEvents();
  EXPECT_FALSE(form->Widget()->isMaximized());
  EXPECT_EQ(form->Width(), kBannerWidth);
}

TEST_F(MainWindowTest, StayOnTopHoldsForTheBannerOnly) {
  WriteIni("[SystemSetting]\nStayOnTop=1\n");
  Start();
  EXPECT_TRUE(form->FStayOnTop);
  EXPECT_EQ(form->FormStyle(), fsStayOnTop);
  EXPECT_TRUE(form->Widget()->windowFlags() & Qt::WindowStaysOnTopHint);
  form->ShowEditor(dir / "Form1.dfm");
  EXPECT_EQ(form->FormStyle(), fsNormal);
  EXPECT_FALSE(form->Widget()->windowFlags() & Qt::WindowStaysOnTopHint);
  // Changed while the editor is shown, the flag only waits.
  form->SetStayOnTop(true);
  EXPECT_EQ(form->FormStyle(), fsNormal);
  form->HideEditor();
  EXPECT_EQ(form->FormStyle(), fsStayOnTop);
  EXPECT_TRUE(form->Widget()->windowFlags() & Qt::WindowStaysOnTopHint);
  form->SetStayOnTop(false);
  EXPECT_FALSE(form->Widget()->windowFlags() & Qt::WindowStaysOnTopHint);
}

TEST_F(MainWindowTest, ASavedEditorWidthLargerThanTheScreenIsClamped) {
  const int sw = Screen->Width(), sh = Screen->Height();
  WriteIni("[SystemSetting]\nFormWidth=" + std::to_string(sw + 500) + "\nFormHeight=300\n");
  Start();
  form->ShowEditor(dir / "Form1.dfm");
  EXPECT_EQ(form->Width(), sw);
  EXPECT_EQ(form->Left(), 0);
  EXPECT_EQ(form->Height(), 300);
  EXPECT_LE(form->Top() + form->Height(), sh);
}

TEST_F(MainWindowTest, SetMainSizeKeepsTheCornerAndSlidesOntoTheScreen) {
  Start();
  const int sw = Screen->Width(), sh = Screen->Height();
  form->SetStayOnTop(false);
  form->ShowEditor(dir / "Form1.dfm");
  form->SetBounds(100, 50, 400, 300);
  form->SetMainSize(500, 400);
  EXPECT_EQ(form->Left(), 100);
  EXPECT_EQ(form->Top(), 50);
  form->SetBounds(sw - 100, sh - 100, 400, 300);
  form->SetMainSize(600, 500);
  EXPECT_EQ(form->Left(), sw - 600);
  EXPECT_EQ(form->Top(), sh - 500);
  EXPECT_EQ(form->Width(), 600);
  EXPECT_EQ(form->Height(), 500);
}

TEST_F(MainWindowTest, EscOnTheBannerMinimisesTheProgram) {
  Start();
  QTest::keyClick(form->Widget(), Qt::Key_Escape);
  QApplication::processEvents();
  EXPECT_TRUE(Application->IsMinimized());
  EXPECT_TRUE(form->Widget()->isMinimized());
  Application->Restore();
}

// ---- Settings --------------------------------------------------------------------------------

TEST_F(MainWindowTest, WithoutSettingsTheDefaultsHold) {
  Start();
  EXPECT_TRUE(form->FViewAsForm);
  EXPECT_FALSE(form->FOnly1VF);
  EXPECT_FALSE(form->FStayOnTop);
  EXPECT_TRUE(form->FReadOnly);
  EXPECT_EQ(form->FFormWidth, 640);
  EXPECT_EQ(form->FFormHeight, 480);
  EXPECT_EQ(form->FVV_Style, 0);
  EXPECT_EQ(form->FKeyClose, 27);
  EXPECT_EQ(form->FKeyToggle, 123);
  EXPECT_EQ(form->FKeyOI, 122);
  EXPECT_EQ(form->FIniFileName, dir / "lumora.ini");
}

TEST_F(MainWindowTest, SettingsAreReadAtStartAndWrittenAtTheEndInTheirOrder) {
  WriteIni("[Packages]\nPackage_0=/x/dclstd.so\nLoaded_0=1\n\n"
           "[SystemSetting]\nViewAsForm=0\nOnly1VF=1\nStayOnTop=0\nReadOnly=0\nFormWidth=700\nFormHeight=500\n"
           "VV_Style=1\nKeyClose=120\nKeyToggle=121\nKeyOI=16497\n\n[Frm_mLumora]\nLeft=33\nTop=44\n");
  Start();
  EXPECT_FALSE(form->FViewAsForm);
  EXPECT_TRUE(form->FOnly1VF);
  EXPECT_FALSE(form->FReadOnly);
  EXPECT_EQ(form->FFormWidth, 700);
  EXPECT_EQ(form->FFormHeight, 500);
  EXPECT_EQ(form->FVV_Style, 1);
  EXPECT_EQ(form->FKeyClose, 120);
  EXPECT_EQ(ShortCutToText(form->mi_FileCloseEditor->ShortCut()), "F9");
  EXPECT_EQ(ShortCutToText(form->mi_ViewAsForm->ShortCut()), "F10");
  EXPECT_EQ(ShortCutToText(form->FKeyOI), "Ctrl+F2");
  EXPECT_EQ(form->Left(), 33);
  EXPECT_EQ(form->Top(), 44);
  form->SetBounds(70, 80, form->Width(), form->Height());
  form->FVV_Style = 0;
  Close();
  EXPECT_EQ(Ini(),
            "[Packages]\nPackage_0=/x/dclstd.so\nLoaded_0=1\n\n"
            "[SystemSetting]\nViewAsForm=0\nOnly1VF=1\nStayOnTop=0\nReadOnly=0\nFormWidth=700\nFormHeight=500\n"
            "VV_Style=0\nKeyClose=120\nKeyToggle=121\nKeyOI=16497\n\n[Frm_mLumora]\nLeft=70\nTop=80\n");
}

TEST_F(MainWindowTest, ADamagedSettingsFileStartsWithDefaultsAndLosesNoOtherKey) {
  const std::string damaged =
      "[SystemSetting]\nViewAsForm=maybe\nFormWidth=wide\nKeyToggle=\nOnly1VF=1\n"
      "\x01\x02 junk without equals\n[Packages]\nPackage_0=/p/dclstd.so\n[Other]\nMine=kept\n";
  WriteIni(damaged);
  SetUserQuestionHook([](const TUserQuestion&) { return IDOK; });
  Start();
  EXPECT_TRUE(form->FViewAsForm);
  EXPECT_EQ(form->FFormWidth, 640);
  EXPECT_TRUE(form->FOnly1VF);
  // Each bad value is told once the program is idle, in one box.
  RunFor(50);
  ASSERT_EQ(AskedQuestions().size(), 1u);
  const std::string text = AskedQuestions()[0].Text;
  EXPECT_NE(text.find("ViewAsForm=maybe"), std::string::npos) << text;
  EXPECT_NE(text.find("FormWidth=wide"), std::string::npos) << text;
  EXPECT_NE(text.find("its default is used"), std::string::npos) << text;
  Close();
  const std::string after = Ini();
  EXPECT_NE(after.find("Package_0=/p/dclstd.so"), std::string::npos) << after;
  EXPECT_NE(after.find("Mine=kept"), std::string::npos) << after;
  EXPECT_NE(after.find("junk without equals"), std::string::npos) << after;
  EXPECT_NE(after.find("ViewAsForm=1"), std::string::npos) << after;
  EXPECT_NE(after.find("FormWidth=640"), std::string::npos) << after;
}

TEST_F(MainWindowTest, SettingsThatCannotBeWrittenAreToldAndTheOldFileStays) {
  WriteIni("[SystemSetting]\nOnly1VF=1\n");
  Start();
  fs::permissions(dir.Path(), fs::perms::owner_read | fs::perms::owner_exec, fs::perm_options::replace);
  fs::permissions(dir / "lumora.ini", fs::perms::owner_read, fs::perm_options::replace);
  PushNextAnswer(IDOK);
  Close();
  fs::permissions(dir.Path(), fs::perms::owner_all, fs::perm_options::replace);
  ASSERT_EQ(AskedQuestions().size(), 1u);
  EXPECT_EQ(AskedQuestions()[0].Text.rfind("The settings could not be saved: ", 0), 0u) << AskedQuestions()[0].Text;
  EXPECT_NE(AskedQuestions()[0].Text.find("lumora.ini"), std::string::npos);
  EXPECT_EQ(Ini(), "[SystemSetting]\nOnly1VF=1\n");
}

// ---- Options ----------------------------------------------------------------------------------

TEST_F(MainWindowTest, TheOptionsMenuOpensEachPageAndAChangeIsApplied) {
  Start();
  for (int page = 1; page <= 3; ++page) {
    TMenuItem* item = page == 1 ? form->mi_OptionsProperties : page == 2 ? form->mi_OptionsFormViewer
                                                                         : form->mi_OptionsPackages;
    bool seen = false;
    QTimer::singleShot(0, [&] {
      TFrm_Options* d = OptionsDialog();
      ASSERT_NE(d, nullptr);
      EXPECT_EQ(d->PageControl->ActivePageIndex(), page - 1);
      seen = true;
      if (page == 1) QTest::mouseClick(d->cb_Only1VF->Widget(), Qt::LeftButton);
      QTest::mouseClick(d->btn_Cancel->Widget(), Qt::LeftButton);
    });
    item->Click();
    EXPECT_TRUE(seen);
    if (page == 1) {
      EXPECT_TRUE(form->FOnly1VF);
      EXPECT_TRUE(form->FOptionsChanged);
    }
  }
  EXPECT_TRUE(form->FOptionsChanged);
}

TEST_F(MainWindowTest, OptionsApplyThroughTheSetters) {
  Start();
  TjoOptionValues v = form->GetOptionValues();
  v.StayOnTop = true;
  v.KeyClose = MakeShortCut(VK_F8, 0);
  v.KeyToggle = MakeShortCut(VK_F7, scShift);
  v.VV_Style = 1;
  form->ApplyOptionValues(v);
  EXPECT_EQ(form->FormStyle(), fsStayOnTop);
  EXPECT_EQ(ShortCutToText(form->mi_FileCloseEditor->ShortCut()), "F8");
  EXPECT_EQ(ShortCutToText(form->mi_ViewAsForm->ShortCut()), "Shift+F7");
  EXPECT_EQ(form->FVV_Style, 1);
}

// ---- The command line, drops and the relay ---------------------------------------------------------

TEST_F(MainWindowTest, StartedWithoutParametersNothingWaits) {
  Start();
  EXPECT_EQ(StartFileName(), "");
  RunFor(30);
  EXPECT_EQ(PendingFileName(), "");
}

TEST_F(MainWindowTest, OnlyTheFirstParameterIsLookedAt) {
  Start({"/forms/first.dfm", "/forms/second.dfm"});
  EXPECT_EQ(StartFileName(), "/forms/first.dfm");
  EXPECT_EQ(ParamCount(), 2);
  RunFor(30);
  // Posted at the first idle, taken by the open step.
  EXPECT_EQ(StartFileName(), "");
  EXPECT_EQ(PendingFileName(), "");
  EXPECT_EQ(SaveDialogFolder(), "/forms/first.dfm");
  EXPECT_EQ(form->OpenDialog->InitialDir(), "/forms");
}

TEST_F(MainWindowTest, OfTwoFilesDroppedOnlyTheFirstIsTaken) {
  Start();
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile("/forms/a.dfm"), QUrl::fromLocalFile("/forms/b.dfm")});
  QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(form->Widget(), &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(form->Widget(), &drop);
  EXPECT_TRUE(drop.isAccepted());
  EXPECT_EQ(StartFileName(), "/forms/a.dfm");
}

TEST_F(MainWindowTest, ADroppedNameIsCutTo512Characters) {
  Start();
  const std::string longName = "/" + std::string(600, 'n') + ".dfm";
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(QString::fromStdString(longName))});
  QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(form->Widget(), &enter);
  QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(form->Widget(), &drop);
  EXPECT_EQ(StartFileName(), longName.substr(0, 512));
}

TEST_F(MainWindowTest, TheRelayWindowJoinsPiecesUntilTheLastOne) {
  Start();
  TFixForm_1245al67_9* relay = form->RelayWindow();
  auto piece = [](const char* text) {
    std::intptr_t chars = 0;
    std::memcpy(&chars, text, std::min<std::size_t>(4, std::strlen(text)));
    return chars;
  };
  EXPECT_EQ(SendMessage(relay, WM_PENDINGFILE, 0, piece("C:\\a")), 1);
  EXPECT_EQ(SendMessage(relay, WM_PENDINGFILE, 0, piece("b.df")), 1);
  EXPECT_EQ(StartFileName(), "");
  EXPECT_EQ(RelayBuffer(), "C:\\ab.df");
  EXPECT_EQ(SendMessage(relay, WM_PENDINGFILE, 1, piece("m")), 1);
  EXPECT_EQ(StartFileName(), "C:\\ab.dfm");
  EXPECT_EQ(RelayBuffer(), "");
  // The last message may carry no piece.
  SendMessage(relay, WM_PENDINGFILE, 0, piece("x.df"));
  SendMessage(relay, WM_PENDINGFILE, 0, piece("m"));
  SendMessage(relay, WM_PENDINGFILE, 1, 0);
  EXPECT_EQ(StartFileName(), "x.dfm");
}

// ---- Window list ------------------------------------------------------------------------------

TEST_F(MainWindowTest, AltZeroShowsTheWindowListWithTheMainWindowPreselected) {
  Start();
  bool shown = false;
  When([] { return ActiveWindow(WindowListDialog()); }, [&] {
    TFrm_WindowList* d = WindowListDialog();
    ASSERT_NE(d, nullptr);
    shown = true;
    EXPECT_EQ(d->Caption(), "  Window List");
    ASSERT_EQ(d->LB_List->Items()->Count(), 1);
    EXPECT_EQ(d->LB_List->Items()->Strings(0), "Main Window");
    EXPECT_EQ(d->LB_List->ItemIndex(), 0);
    QTest::keyClick(d->LB_List->Widget(), Qt::Key_Escape);
  });
  QTest::keyClick(form->Widget(), Qt::Key_0, Qt::AltModifier);
  RunFor(30);
  EXPECT_TRUE(shown);
  EXPECT_TRUE(form->FWinListIdle);
  // With no live form the Window List menu is disabled and empty.
  EXPECT_FALSE(form->bmi_WinList->Enabled());
  form->RefreshWindowMenu();
  EXPECT_EQ(form->bmi_WinList->Count(), 0);
  EXPECT_FALSE(form->bmi_WinList->Enabled());
  EXPECT_FALSE(form->mi_ViewWindowList->Enabled());
}

TEST_F(MainWindowTest, ASecondAltZeroWhileTheListIsUpIsIgnored) {
  Start();
  int dialogs = 0;
  When([] { return ActiveWindow(WindowListDialog()); }, [&] {
    TFrm_WindowList* d = WindowListDialog();
    ASSERT_NE(d, nullptr);
    ++dialogs;
    // Alt+0 again, in the dialog: nothing more opens.
    QTest::keyClick(d->LB_List->Widget(), Qt::Key_0, Qt::AltModifier);
    QApplication::processEvents();
    RunFor(20);
    EXPECT_EQ(WindowListDialog(), d);
    QTest::keyClick(d->LB_List->Widget(), Qt::Key_Escape);
  });
  QTest::keyClick(form->Widget(), Qt::Key_0, Qt::AltModifier);
  RunFor(50);
  EXPECT_EQ(dialogs, 1);
  EXPECT_EQ(WindowListDialog(), nullptr);
}
