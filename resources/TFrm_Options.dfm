object Frm_Options: TFrm_Options
  Left = 290
  Top = 180
  BorderIcons = [biSystemMenu]
  BorderStyle = bsToolWindow
  Caption = 'Lumora properties'
  ClientHeight = 245
  ClientWidth = 355
  Color = clBtnFace
  Font.Charset = DEFAULT_CHARSET
  Font.Color = clWindowText
  Font.Height = -11
  Font.Name = 'MS Sans Serif'
  Font.Style = []
  Position = poScreenCenter
  OnShow = FormShow
  PixelsPerInch = 96
  TextHeight = 13
  object PageControl: TPageControl
    Left = 8
    Top = 8
    Width = 339
    Height = 197
    ActivePage = ts_General
    TabOrder = 0
    OnChange = PageControlChange
    object ts_General: TTabSheet
      Caption = 'General'
      object Bevel1: TBevel
        Left = 8
        Top = 8
        Width = 315
        Height = 153
      end
      object cb_Top: TCheckBox
        Left = 24
        Top = 22
        Width = 281
        Height = 17
        Caption = '&Stay on top main form'
        TabOrder = 0
        OnClick = SettingChange
      end
      object cb_AsForm: TCheckBox
        Left = 24
        Top = 48
        Width = 281
        Height = 17
        Caption = 'Open file as &Form by default'
        TabOrder = 1
        OnClick = SettingChange
      end
      object cb_ReadOnly: TCheckBox
        Left = 24
        Top = 74
        Width = 281
        Height = 17
        Caption = 'Open files "&Read Only" by default'
        TabOrder = 2
        OnClick = SettingChange
      end
      object cb_Only1VF: TCheckBox
        Left = 24
        Top = 100
        Width = 281
        Height = 17
        Caption = 'Only &1 visible form'
        TabOrder = 3
        OnClick = SettingChange
      end
      object cb_RemLWP: TCheckBox
        Left = 24
        Top = 126
        Width = 281
        Height = 17
        Caption = 'Remember the last window &position'
        TabOrder = 4
        Visible = False
      end
    end
    object ts_FormStyle: TTabSheet
      Caption = 'Form Style'
      ImageIndex = 1
      object rg_FormStyle: TRadioGroup
        Left = 8
        Top = 4
        Width = 315
        Height = 65
        Caption = ' &Style '
        Items.Strings = (
          '&Live Form'
          '&Dead Form')
        TabOrder = 0
        OnClick = SettingChange
      end
      object gb_HotKeys: TGroupBox
        Left = 8
        Top = 76
        Width = 315
        Height = 85
        Caption = ' &Hot Keys '
        TabOrder = 1
        object lbl_HC_Type: TLabel
          Left = 16
          Top = 24
          Width = 30
          Height = 13
          Caption = '&Action'
          FocusControl = cb_HC_Type
        end
        object lbl_HotKeys: TLabel
          Left = 192
          Top = 24
          Width = 41
          Height = 13
          Caption = 'Hot &Key'
          FocusControl = cb_HotKeys
        end
        object cb_HC_Type: TComboBox
          Left = 16
          Top = 42
          Width = 161
          Height = 21
          Style = csDropDownList
          ItemHeight = 13
          Items.Strings = (
            'Close form/file'
            'Toggle Form/Text'
            'View Object Inspector')
          TabOrder = 0
          OnChange = cb_HC_TypeChange
        end
        object cb_HotKeys: TComboBox
          Left = 192
          Top = 42
          Width = 107
          Height = 21
          Style = csDropDownList
          DropDownCount = 16
          ItemHeight = 13
          TabOrder = 1
          OnChange = cb_HotKeysChange
        end
      end
    end
    object ts_Packages: TTabSheet
      Caption = 'Packages'
      ImageIndex = 2
    end
  end
  object btn_OK: TButton
    Left = 191
    Top = 213
    Width = 75
    Height = 25
    Caption = '&OK'
    Default = True
    Enabled = False
    ModalResult = 1
    TabOrder = 1
  end
  object btn_Cancel: TButton
    Left = 272
    Top = 213
    Width = 75
    Height = 25
    Cancel = True
    Caption = '&Cancel'
    ModalResult = 2
    TabOrder = 2
  end
end
