object InventoryForm: TInventoryForm
  Left = 310
  Top = 160
  Width = 544
  Height = 375
  Caption = 'Lumora sample: lists and collections'
  Color = clBtnFace
  Font.Charset = DEFAULT_CHARSET
  Font.Color = clWindowText
  Font.Height = -11
  Font.Name = 'MS Sans Serif'
  Font.Style = []
  OldCreateOrder = False
  PixelsPerInch = 96
  TextHeight = 13
  object CategoryList: TListBox
    Left = 8
    Top = 8
    Width = 121
    Height = 97
    ItemHeight = 13
    Items.Strings = (
      'Bolts'
      'Nuts'
      'Washers'
      'Springs'
      'Brackets')
    TabOrder = 0
  end
  object UnitCombo: TComboBox
    Left = 8
    Top = 112
    Width = 121
    Height = 21
    Style = csDropDownList
    ItemHeight = 13
    Items.Strings = (
      'pieces'
      'boxes'
      'kilograms')
    TabOrder = 1
  end
  object NotesMemo: TMemo
    Left = 8
    Top = 144
    Width = 121
    Height = 153
    Lines.Strings = (
      'Count the washers twice.'
      ''
      'Supplier'#39's catalogue: every spring.')
    ScrollBars = ssVertical
    TabOrder = 2
  end
  object StockView: TListView
    Left = 136
    Top = 8
    Width = 393
    Height = 209
    Columns = <
      item
        Caption = 'Part'
        Width = 160
      end
      item
        Alignment = taRightJustify
        Caption = 'In stock'
        Width = 70
      end
      item
        Caption = 'Shelf'
      end>
    ReadOnly = True
    RowSelect = True
    TabOrder = 3
    ViewStyle = vsReport
  end
  object SizeGrid: TStringGrid
    Left = 136
    Top = 224
    Width = 393
    Height = 73
    ColCount = 3
    FixedCols = 0
    RowCount = 2
    Options = [goFixedVertLine, goFixedHorzLine, goVertLine, goHorzLine, goEditing]
    TabOrder = 4
    ColWidths = (
      160
      110
      110)
  end
  object StatusBar: TStatusBar
    Left = 0
    Top = 329
    Width = 536
    Height = 19
    Panels = <
      item
        Width = 150
      end
      item
        Text = 'Ready'
        Width = 50
      end>
    SimplePanel = False
  end
  object Toolbar: THeaderControl
    Left = 0
    Top = 305
    Width = 536
    Height = 24
    Align = alBottom
    Sections = <>
  end
end
