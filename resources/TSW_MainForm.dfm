object SW_MainForm: TSW_MainForm
  Left = 192
  Top = 107
  Width = 320
  Height = 160
  Caption = '.'
  Color = clBtnFace
  Font.Charset = DEFAULT_CHARSET
  Font.Color = clWindowText
  Font.Height = -11
  Font.Name = 'MS Sans Serif'
  Font.Style = []
  Menu = MainMenu
  Position = poScreenCenter
  OnCreate = FormCreate
  OnDestroy = FormDestroy
  PixelsPerInch = 96
  TextHeight = 13
  object MainMenu: TMainMenu
    Left = 8
    Top = 8
    object bmi_File: TMenuItem
      Caption = '&File  '
      GroupIndex = 1
      object mi_FileDlmN: TMenuItem
        Caption = '-'
      end
      object mi_FileExit: TMenuItem
        Caption = 'E&xit'
        ShortCut = 32856
        OnClick = mi_FileExitClick
      end
    end
    object bmi_Help: TMenuItem
      Caption = '&Help  '
      GroupIndex = 10
      object mi_HelpHelp: TMenuItem
        Caption = '&Help Topics'
        OnClick = mi_HelpHelpClick
      end
      object mi_HelpDlmN: TMenuItem
        Caption = '-'
      end
      object mi_HelpAbout: TMenuItem
        Caption = '&About'
        OnClick = mi_HelpShowAboutBox
      end
    end
  end
end
