object SampleDialog: TSampleDialog
  Left = 245
  Top = 130
  BorderStyle = bsDialog
  Caption = 'Lumora sample: contact details'
  ClientHeight = 212
  ClientWidth = 376
  Color = clBtnFace
  Font.Charset = DEFAULT_CHARSET
  Font.Color = clWindowText
  Font.Height = -11
  Font.Name = 'MS Sans Serif'
  Font.Style = []
  OldCreateOrder = False
  Position = poScreenCenter
  OnCreate = FormCreate
  PixelsPerInch = 96
  TextHeight = 13
  object NameLabel: TLabel
    Left = 12
    Top = 16
    Width = 31
    Height = 13
    Caption = '&Name:'
    FocusControl = NameEdit
  end
  object EmailLabel: TLabel
    Left = 12
    Top = 48
    Width = 28
    Height = 13
    Caption = '&E-mail:'
    FocusControl = EmailEdit
  end
  object NameEdit: TEdit
    Left = 80
    Top = 12
    Width = 281
    Height = 21
    TabOrder = 0
    Text = 'Ada Lovelace'
  end
  object EmailEdit: TEdit
    Left = 80
    Top = 44
    Width = 281
    Height = 21
    TabOrder = 1
    OnExit = EmailEditExit
  end
  object NewsCheck: TCheckBox
    Left = 80
    Top = 80
    Width = 209
    Height = 17
    Caption = 'Send me the monthly newsletter'
    Checked = True
    State = cbChecked
    TabOrder = 2
  end
  object ButtonPanel: TPanel
    Left = 0
    Top = 171
    Width = 376
    Height = 41
    Align = alBottom
    BevelOuter = bvNone
    TabOrder = 3
    object OkButton: TButton
      Left = 206
      Top = 8
      Width = 75
      Height = 25
      Anchors = [akTop, akRight]
      Caption = 'OK'
      Default = True
      ModalResult = 1
      TabOrder = 0
      OnClick = OkButtonClick
    end
    object CancelButton: TButton
      Left = 288
      Top = 8
      Width = 75
      Height = 25
      Anchors = [akTop, akRight]
      Cancel = True
      Caption = 'Cancel'
      ModalResult = 2
      TabOrder = 1
    end
  end
end
