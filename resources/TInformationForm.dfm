object InformationForm: TInformationForm
  Left = 200
  Top = 120
  Width = 300
  Height = 200
  Caption = 'Information'
  Color = clBtnFace
  Font.Charset = DEFAULT_CHARSET
  Font.Color = clWindowText
  Font.Height = -11
  Font.Name = 'MS Sans Serif'
  Font.Style = []
  KeyPreview = True
  PixelsPerInch = 96
  TextHeight = 13
end
