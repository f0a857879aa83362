inherited SettingsForm: TSettingsForm
  Left = 280
  Top = 190
  Caption = 'Lumora sample: inherited form with a frame'
  ClientHeight = 246
  PixelsPerInch = 96
  TextHeight = 13
  inherited TitleLabel: TLabel
    Caption = 'Settings'
  end
  object ExtraCheck: TCheckBox [1]
    Left = 16
    Top = 40
    Width = 240
    Height = 17
    Caption = 'Remember the window position'
    TabOrder = 2
  end
  inline AddressFrame: TAddressFrame
    Left = 8
    Top = 64
    Width = 320
    Height = 120
    TabOrder = 1
    inherited StreetEdit: TEdit
      Text = 'Main Street 1'
    end
    inherited CityEdit: TEdit
      Text = 'Springfield'
    end
  end
  inherited ButtonPanel: TPanel
    Top = 205
    TabOrder = 0
    inherited OkButton: TButton
      OnClick = OkButtonClick
    end
  end
end
