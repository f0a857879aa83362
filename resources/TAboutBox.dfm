inherited AboutBox: TAboutBox
  Left = 245
  Top = 160
  BorderIcons = [biSystemMenu]
  BorderStyle = bsToolWindow
  Caption = 'About'
  ClientHeight = 156
  ClientWidth = 356
  Position = poScreenCenter
  OnCreate = FormCreate
  PixelsPerInch = 96
  TextHeight = 13
  object Panel1: TPanel
    Left = 8
    Top = 8
    Width = 340
    Height = 105
    BevelOuter = bvLowered
    TabOrder = 0
    object ProgramIcon: TImage
      Left = 10
      Top = 10
      Width = 32
      Height = 32
      Center = True
    end
    object ProgramName: TLabel
      Left = 56
      Top = 10
      Width = 52
      Height = 16
      Caption = 'Program'
      Font.Charset = DEFAULT_CHARSET
      Font.Color = clWindowText
      Font.Height = -13
      Font.Name = 'MS Sans Serif'
      Font.Style = [fsBold]
      ParentFont = False
      OnClick = URLClick
    end
    object Label1: TLabel
      Left = 56
      Top = 32
      Width = 35
      Height = 13
      Caption = 'Version'
    end
    object lblVersion: TLabel
      Left = 100
      Top = 32
      Width = 36
      Height = 13
      Caption = '1.0.0.0'
    end
    object lblMaker: TLabel
      Left = 56
      Top = 52
      Width = 150
      Height = 13
      Caption = 'Made by the Lumora developers'
    end
    object Label10: TLabel
      Left = 10
      Top = 80
      Width = 150
      Height = 13
      Caption = 'Please address all feedback to '
    end
    object Label11: TLabel
      Left = 160
      Top = 80
      Width = 100
      Height = 13
      Cursor = crHandPoint
      Hint = 'Send E-Mail to autor'
      Caption = 'lumora-feedback@example.org'
      Font.Charset = DEFAULT_CHARSET
      Font.Color = clBlue
      Font.Height = -11
      Font.Name = 'MS Sans Serif'
      Font.Style = [fsUnderline]
      ParentFont = False
      ParentShowHint = False
      ShowHint = True
      OnClick = Label11Click
    end
  end
  object OKButton: TButton
    Left = 140
    Top = 123
    Width = 75
    Height = 25
    Caption = '&Ok'
    Default = True
    Cancel = True
    TabOrder = 1
    OnClick = OKButtonClick
  end
end
