object Frm_StrN_Edit: TFrm_StrN_Edit
  Left = 245
  Top = 159
  Width = 459
  Height = 348
  BorderIcons = [biSystemMenu]
  Caption = 'Strings'
  Color = clBtnFace
  Font.Charset = DEFAULT_CHARSET
  Font.Color = clWindowText
  Font.Height = -11
  Font.Name = 'MS Sans Serif'
  Font.Style = []
  Position = poScreenCenter
  OnCreate = FormCreate
  OnResize = FormResize
  PixelsPerInch = 96
  TextHeight = 13
  object Panel1: TPanel
    Left = 0
    Top = 280
    Width = 451
    Height = 41
    Align = alBottom
    BevelOuter = bvNone
    TabOrder = 1
    object Panel2: TPanel
      Left = 215
      Top = 0
      Width = 236
      Height = 41
      Align = alRight
      BevelOuter = bvNone
      TabOrder = 0
      object BtnOk: TButton
        Left = 64
        Top = 8
        Width = 75
        Height = 25
        Caption = 'OK'
        ModalResult = 1
        TabOrder = 0
      end
      object BtnCancel: TButton
        Left = 152
        Top = 8
        Width = 75
        Height = 25
        Cancel = True
        Caption = 'Cancel'
        ModalResult = 2
        TabOrder = 1
      end
    end
  end
  object Panel3: TPanel
    Left = 0
    Top = 5
    Width = 5
    Height = 275
    Align = alLeft
    BevelOuter = bvNone
    TabOrder = 2
  end
  object Panel4: TPanel
    Left = 0
    Top = 0
    Width = 451
    Height = 5
    Align = alTop
    BevelOuter = bvNone
    TabOrder = 3
  end
  object Panel5: TPanel
    Left = 446
    Top = 5
    Width = 5
    Height = 275
    Align = alRight
    BevelOuter = bvNone
    TabOrder = 4
  end
  object Grid_: TStringGrid
    Left = 40
    Top = 32
    Width = 185
    Height = 120
    ColCount = 1
    DefaultRowHeight = 18
    FixedCols = 0
    FixedRows = 0
    Font.Charset = DEFAULT_CHARSET
    Font.Color = clWindowText
    Font.Height = -13
    Font.Name = 'System'
    Font.Style = [fsBold]
    Options = [goFixedVertLine, goFixedHorzLine, goHorzLine, goEditing, goThumbTracking]
    ParentFont = False
    TabOrder = 5
    Visible = False
  end
end
