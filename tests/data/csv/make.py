#!/usr/bin/env python3
"""Writes the golden table files beside this script.

The files are checked in; csv_golden_test.cpp says what the loader makes of
each. Run this only to add one, and look at the difference before committing.
"""

import pathlib

HERE = pathlib.Path(__file__).parent
MARK = "\N{BYTE ORDER MARK}"
SMALL = "名稱\t溫度\n程序1\t100\n程序2\t200\n"
BARE_QUOTE = 'a\tb\n1\t5" pipe\n"2\t3\n'

FILES = {
    "utf16le_mark.txt": (MARK + SMALL, "utf-16-le"),
    "utf16le_no_mark.txt": (SMALL, "utf-16-le"),
    "utf16be_mark.txt": (MARK + SMALL, "utf-16-be"),
    "utf16be_no_mark.txt": (SMALL, "utf-16-be"),
    "utf8_mark.csv": (MARK + SMALL.replace("\t", ","), "utf-8"),
    "big5.txt": (SMALL, "big5"),
    "comma.csv": (MARK + SMALL.replace("\t", ","), "utf-16-le"),
    "quoted_delimiters.csv": (MARK + 'a,b\n"x,y",","\n",,",1\n', "utf-16-le"),
    "doubled_quotes.csv": (MARK + 'a,b\n"say ""hi""",""""\n"""",""\n', "utf-16-le"),
    "line_breaks.txt": (MARK + 'a\tb\n"1\n\n2"\t"\n"\n3\n', "utf-16-le"),
    "crlf.txt": (MARK + SMALL.replace("\n", "\r\n"), "utf-16-le"),
    "lone_carriage_returns.txt": (MARK + "a\tb\r\n1\r1\t\r2\n\r\n3\t4\r", "utf-16-le"),
    "empty_lines.txt": (MARK + "a\tb\n\n1\t2\n\n\n3\n", "utf-16-le"),
    "too_few_columns.txt": (MARK + "a\tb\tc\n1\t2\n1\n1\t2\t3\n", "utf-16-le"),
    "too_many_columns.txt": (MARK + "a\tb\n1\t2\t3\n1\t2\n1\t2\t3\t4\n", "utf-16-le"),
    "wrong_delimiter.txt": (MARK + "first,second,third\n1,2,3\n4,5\n", "utf-16-le"),
    "no_delimiter.txt": (MARK + "nothing to split by\n1\n", "utf-16-le"),
    "header_only.txt": (MARK + "a\tb\n", "utf-16-le"),
    "empty.txt": ("", "utf-16-le"),
    "only_mark.txt": (MARK, "utf-16-le"),
    "no_final_line_end.txt": (MARK + "a\tb\n1\t2", "utf-16-le"),
    "lone_quote_at_end.txt": (MARK + 'a\tb\n1\t2\n3\t"', "utf-16-le"),
    "quote_never_closed.txt": (MARK + BARE_QUOTE, "utf-16-le"),
    "thirty_errors.txt": (MARK + "a\tb\n" + "1\n" * 30, "utf-16-le"),
}


def main():
    for name, (text, encoding) in FILES.items():
        (HERE / name).write_bytes(text.encode(encoding))


if __name__ == "__main__":
    main()
