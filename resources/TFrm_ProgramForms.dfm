object Frm_ProgramForms: TFrm_ProgramForms
  Left = 300
  Top = 200
  BorderStyle = bsDialog
  Caption = 'Forms of the Program'
  ClientHeight = 273
  ClientWidth = 377
  Color = clBtnFace
  Font.Charset = DEFAULT_CHARSET
  Font.Color = clWindowText
  Font.Height = -11
  Font.Name = 'MS Sans Serif'
  Font.Style = []
  Position = poScreenCenter
  PixelsPerInch = 96
  TextHeight = 13
  object Lbl_Forms: TLabel
    Left = 8
    Top = 8
    Width = 361
    Height = 13
    AutoSize = False
    Caption = 'The program holds several forms. Open which one?'
    FocusControl = LV_Forms
  end
  object LV_Forms: TListView
    Left = 8
    Top = 28
    Width = 361
    Height = 201
    Columns = <
      item
        Caption = 'Resource'
        Width = 170
      end
      item
        Caption = 'Class'
        Width = 170
      end>
    ColumnClick = False
    HideSelection = False
    ReadOnly = True
    RowSelect = True
    TabOrder = 0
    ViewStyle = vsReport
    OnDblClick = LV_FormsDblClick
  end
  object BtnOk: TButton
    Left = 190
    Top = 240
    Width = 86
    Height = 25
    Caption = 'OK'
    Default = True
    ModalResult = 1
    TabOrder = 1
  end
  object BtnCancel: TButton
    Left = 283
    Top = 240
    Width = 86
    Height = 25
    Cancel = True
    Caption = 'Cancel'
    ModalResult = 2
    TabOrder = 2
  end
end
