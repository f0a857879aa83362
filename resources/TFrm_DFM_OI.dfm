object Frm_DFM_OI: TFrm_DFM_OI
  Left = 266
  Top = 102
  Width = 266
  Height = 375
  BorderIcons = [biSystemMenu]
  BorderStyle = bsSizeToolWin
  Caption = 'Object Inspector'
  Color = clBtnFace
  Font.Charset = DEFAULT_CHARSET
  Font.Color = clWindowText
  Font.Height = -11
  Font.Name = 'MS Sans Serif'
  Font.Style = []
  FormStyle = fsStayOnTop
  KeyPreview = True
  OldCreateOrder = False
  OnClose = FormClose
  OnKeyDown = FormKeyDown
  PixelsPerInch = 96
  TextHeight = 13
  object Panel1: TPanel
    Left = 0
    Top = 0
    Width = 258
    Height = 41
    Align = alTop
    BevelOuter = bvNone
    TabOrder = 0
    object Label1: TLabel
      Left = 0
      Top = 25
      Width = 66
      Height = 16
      Align = alLeft
      Caption = '   Components'
      Layout = tlCenter
    end
    object Pan_FrmName: TPanel
      Left = 0
      Top = 0
      Width = 258
      Height = 25
      Align = alTop
      BevelInner = bvLowered
      Font.Charset = DEFAULT_CHARSET
      Font.Color = clWindowText
      Font.Height = -13
      Font.Name = 'System'
      Font.Style = [fsBold]
      ParentFont = False
      TabOrder = 0
    end
  end
  object CompTree: TTreeView
    Left = 0
    Top = 41
    Width = 258
    Height = 184
    Align = alTop
    HideSelection = False
    Indent = 19
    ReadOnly = True
    TabOrder = 1
    OnChange = CompTreeChange
    OnKeyDown = CompTreeKeyDown
  end
  object Splitter: TSplitter
    Left = 0
    Top = 225
    Width = 258
    Height = 3
    Cursor = crVSplit
    Align = alTop
  end
  object Panel2: TPanel
    Left = 0
    Top = 228
    Width = 258
    Height = 13
    Align = alTop
    Alignment = taLeftJustify
    BevelOuter = bvNone
    Caption = '   Propertyes'
    TabOrder = 2
  end
  object Propertyes: TMemo
    Left = 0
    Top = 241
    Width = 258
    Height = 110
    Align = alClient
    Font.Charset = DEFAULT_CHARSET
    Font.Color = clWindowText
    Font.Height = -11
    Font.Name = 'Courier New'
    Font.Style = []
    ParentFont = False
    ReadOnly = True
    ScrollBars = ssBoth
    TabOrder = 3
    WordWrap = False
  end
end
