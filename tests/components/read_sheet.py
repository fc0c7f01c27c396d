"""Shows a workbook as lines of text: a second opinion on what was written."""

import re
import sys
import zipfile

import openpyxl

book = openpyxl.load_workbook(sys.argv[1])
sheet = book.active
print("sheet", sheet.title, "rtl" if sheet.sheet_view.rightToLeft else "ltr", sheet.dimensions)
print("frozen", sheet.freeze_panes, "filter", sheet.auto_filter.ref, "repeated", sheet.print_title_rows)
print("page", sheet.page_setup.orientation, "paper", sheet.page_setup.paperSize, "wide", sheet.page_setup.fitToWidth,
      "tall", sheet.page_setup.fitToHeight, "summary below", sheet.sheet_properties.outlinePr.summaryBelow)
print("digits as text in", *re.findall('<ignoredError sqref="(.*?)" numberStoredAsText="1"',
                                      zipfile.ZipFile(sys.argv[1]).read("xl/worksheets/sheet1.xml").decode()))
print("widths", *(f"{sheet.column_dimensions[letter].width:.0f}" for letter in "ABCDEFGHI"))
for row in sheet.iter_rows(max_row=int(sys.argv[2])):
    place = row[0].row
    marks = "".join("w" if cell.alignment.wrap_text else "." for cell in row)
    indent = int(max(cell.alignment.indent for cell in row[1:]))
    height = sheet.row_dimensions[place].height
    high = f" high {height:.0f}" if height else ""
    print(place, f"fold {sheet.row_dimensions[place].outlineLevel} indent {indent} {marks}{high}",
          *("" if cell.value is None else f"{cell.data_type}:{cell.value}".replace("\n", "/") for cell in row), sep="|")
if len(sys.argv) > 3:
    print("margins", sheet.page_margins.left, sheet.page_margins.right, sheet.page_margins.top, sheet.page_margins.bottom,
          "foot", sheet.oddFooter.center.text)
for name in sys.argv[3:]:
    cell, look = sheet[name], sheet[name].alignment
    print(name, look.horizontal, look.vertical, ("", "ltr", "rtl")[int(look.readingOrder)], int(look.indent), cell.number_format,
          "wrapped" if look.wrap_text else "", "bold" if cell.font.bold else "", cell.fill.start_color.rgb, cell.border.bottom.style)
