inherited Frm_mLumora: TFrm_mLumora
  Left = 300
  Top = 200
  Width = 270
  Height = 90
  Caption = 'Lumora'
  OnActivate = FormActivate
  OnClose = FormClose
  OnCreate = FormCreate
  OnDestroy = FormDestroy
  PixelsPerInch = 96
  TextHeight = 13
  object Label1: TLabel
    Left = 0
    Top = 0
    Width = 262
    Height = 31
    Align = alClient
    Alignment = taCenter
    Caption = 'Lumora'
    Font.Charset = DEFAULT_CHARSET
    Font.Color = clGreen
    Font.Height = -24
    Font.Name = 'MS Sans Serif'
    Font.Style = [fsBold]
    Layout = tlCenter
    ParentFont = False
    WordWrap = True
  end
  object Label2: TLabel
    Left = 0
    Top = 31
    Width = 262
    Height = 13
    Align = alBottom
    Alignment = taCenter
    Caption = 'F3: open as form    F4: open as text'
  end
  inherited MainMenu: TMainMenu
    inherited bmi_File: TMenuItem
      object mi_OpenAsForm: TMenuItem [0]
        Caption = 'Open as &Form'
        ShortCut = 114
        OnClick = mi_OpenAsFormClick
      end
      object mi_OpenAsText: TMenuItem [1]
        Caption = 'Open as &Text'
        ShortCut = 115
        OnClick = mi_OpenAsTextClick
      end
      object mi_FileSaveAs: TMenuItem [3]
        Caption = '&Save As ...'
        Enabled = False
        OnClick = mi_FileSaveAsClick
      end
      object N1: TMenuItem [4]
        Caption = '-'
      end
      object mi_FileCloseEditor: TMenuItem [5]
        Caption = '&Hide Viewer'
        ShortCut = 27
        OnClick = mi_FileCloseEditorClick
      end
      object N2: TMenuItem [6]
        Caption = '-'
      end
      inherited mi_FileExit: TMenuItem
        OnClick = mi_ExitClick
      end
    end
    object bmi_View: TMenuItem [1]
      Caption = '&View  '
      GroupIndex = 1
      object mi_ViewAsForm: TMenuItem
        Caption = '&View as Form'
        Enabled = False
        ShortCut = 123
        OnClick = mi_ViewAsFormClick
      end
      object mi_ViewWindowList: TMenuItem
        Caption = 'Window List ...'
        Enabled = False
        ShortCut = 32816
        OnClick = mi_ViewWindowListClick
      end
    end
    object bmi_Options: TMenuItem [2]
      Caption = '&Options  '
      GroupIndex = 10
      object mi_OptionsProperties: TMenuItem
        Caption = '&General'
        OnClick = mi_OptionsPropertiesClick
      end
      object mi_OptionsFormViewer: TMenuItem
        Caption = '&Form Viewer'
        OnClick = mi_OptionsFormViewerClick
      end
      object mi_OptionsPackages: TMenuItem
        Caption = 'P&ackages'
        OnClick = mi_OptionsPackagesClick
      end
    end
    object bmi_WinList: TMenuItem [3]
      Caption = '&Window List  '
      Enabled = False
      GroupIndex = 10
      object N2_1: TMenuItem
        Caption = '-'
      end
      object CloseeAll: TMenuItem
        Caption = 'Close &All'
        OnClick = mi_CloseAllClick
      end
    end
    inherited bmi_Help: TMenuItem
      inherited mi_HelpHelp: TMenuItem
        OnClick = mi_HelpHelpClick
      end
    end
  end
  object OpenDialog: TOpenDialog
    Filter = 'Delphi DFM-files|*.dfm|Delphi programs|*.exe;*.dll;*.bpl'
    Options = [ofPathMustExist, ofFileMustExist]
    Left = 40
    Top = 8
  end
  object SaveDialog: TSaveDialog
    Filter = 'Delphi Form (*.DFM)|*.DFM|RC resource script (*.RC)|*.RC|Text file (*.TXT)|*.TXT'
    Options = [ofOverwritePrompt, ofHideReadOnly]
    Left = 72
    Top = 8
  end
end
