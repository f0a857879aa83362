object Frm_WindowList: TFrm_WindowList
  Left = 300
  Top = 200
  BorderStyle = bsToolWindow
  Caption = 'Window List'
  ClientHeight = 207
  ClientWidth = 307
  Color = clBtnFace
  Font.Charset = DEFAULT_CHARSET
  Font.Color = clWindowText
  Font.Height = -11
  Font.Name = 'MS Sans Serif'
  Font.Style = []
  FormStyle = fsStayOnTop
  Position = poScreenCenter
  PixelsPerInch = 96
  TextHeight = 13
  object LB_List: TListBox
    Left = 8
    Top = 8
    Width = 289
    Height = 153
    ItemHeight = 13
    TabOrder = 0
    OnDblClick = LB_ListDblClick
  end
  object BtnOk: TButton
    Left = 120
    Top = 176
    Width = 75
    Height = 25
    Caption = 'OK'
    Default = True
    ModalResult = 1
    TabOrder = 1
  end
  object BtnCancel: TButton
    Left = 224
    Top = 176
    Width = 75
    Height = 25
    Cancel = True
    Caption = 'Cancel'
    ModalResult = 2
    TabOrder = 2
  end
end
