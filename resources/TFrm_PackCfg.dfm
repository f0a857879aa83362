object Frm_PackCfg: TFrm_PackCfg
  Left = 320
  Top = 240
  BorderIcons = [biSystemMenu]
  BorderStyle = bsToolWindow
  Caption = 'Packages configuration ...'
  ClientHeight = 195
  ClientWidth = 340
  Color = clBtnFace
  Font.Charset = DEFAULT_CHARSET
  Font.Color = clWindowText
  Font.Height = -11
  Font.Name = 'MS Sans Serif'
  Font.Style = []
  OldCreateOrder = False
  Position = poScreenCenter
  OnCreate = FormCreate
  OnShow = FormShow
  PixelsPerInch = 96
  TextHeight = 13
  object GroupBox1: TGroupBox
    Left = 0
    Top = 0
    Width = 340
    Height = 195
    Align = alClient
    Caption = ' Design packages '
    TabOrder = 0
    object Pan_Left: TPanel
      Left = 2
      Top = 15
      Width = 5
      Height = 178
      Align = alLeft
      BevelOuter = bvNone
      TabOrder = 0
    end
    object Pan_Right: TPanel
      Left = 333
      Top = 15
      Width = 5
      Height = 178
      Align = alRight
      BevelOuter = bvNone
      TabOrder = 2
    end
    object Pan_Center: TPanel
      Left = 7
      Top = 15
      Width = 326
      Height = 178
      Align = alClient
      BevelOuter = bvNone
      TabOrder = 1
      object Pan_Loading: TPanel
        Left = 0
        Top = 0
        Width = 326
        Height = 121
        Anchors = [akLeft, akTop, akRight, akBottom]
        BevelOuter = bvLowered
        Caption = 'Loading packages info ...'
        TabOrder = 0
        object CheckListBox: TCheckListBox
          Left = 1
          Top = 1
          Width = 324
          Height = 119
          Align = alClient
          ItemHeight = 13
          Sorted = True
          TabOrder = 0
          OnClick = CheckListBoxClick
          OnClickCheck = CheckListBoxClickCheck
        end
      end
      object DPL_Name: TEdit
        Left = 0
        Top = 123
        Width = 326
        Height = 21
        Anchors = [akLeft, akRight, akBottom]
        ParentColor = True
        ReadOnly = True
        TabOrder = 1
        TabStop = False
      end
      object Panel1: TPanel
        Left = 0
        Top = 144
        Width = 326
        Height = 34
        Align = alBottom
        BevelOuter = bvNone
        TabOrder = 2
        object Panel2: TPanel
          Left = 72
          Top = 0
          Width = 254
          Height = 34
          Align = alRight
          BevelOuter = bvNone
          TabOrder = 0
          object BtnPackAdd: TButton
            Left = 8
            Top = 5
            Width = 75
            Height = 25
            Caption = 'Add ...'
            TabOrder = 0
            OnClick = BtnPackAddClick
          end
          object BtnPackDel: TButton
            Left = 92
            Top = 5
            Width = 75
            Height = 25
            Caption = 'Remove'
            TabOrder = 1
            OnClick = BtnPackDelClick
          end
          object BtnComponents: TButton
            Left = 176
            Top = 5
            Width = 75
            Height = 25
            Caption = 'Components'
            Enabled = False
            TabOrder = 2
          end
        end
      end
    end
  end
  object OpenDialog: TOpenDialog
    Options = [ofHideReadOnly, ofFileMustExist, ofEnableSizing]
    Left = 16
    Top = 32
  end
end
