#!/usr/bin/env python3
"""Makes the golden program files beside it. It knows the file format only from
the operators' side: UTF-16LE with a byte-order mark, one line per program, a tab
between two fields, a line feed at the end of every line.

PROG_7.txt         three programs as a controller holds them
PROG_template.txt  the blank form for three programs
PROG_0.txt         no program at all
"""

from pathlib import Path

HEADER = [
    " ", "設定溫度", "設定時間(時)", "設定時間(分)", "設定時間(秒)",
    "G. SOAK +", "G. SOAK  -", "PID 群組", "Empty",
    "EVENT1 機械泵ON", "EVENT2 粗抽閥", "EVENT3 魯式ON", "EVENT4 備壓",
    "EVENT5 氮氣分壓", "EVENT6 加熱", "EVENT7 混合氣分壓", "EVENT8 測漏",
    "EVENT9 脈衝換氣", "EVENT10", "EVENT11", "EVENT12",
    "DI1", "DI2", "DI3 程式結束", "DI4 真空未達 HOLD",
]
LABEL = "程序"

# The double words of programs 1, 2 and 3; tests put the same into the controller.
PROGRAMS = [
    [850, 0, 30, 0, 5, 5, 1, 0, 1, 1, 1, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0],
    [4294967295, 65536, 65535, 70000, 2147483648, 10, 100, 1000, 10000, 100000,
     1000000, 10000000, 100000000, 1000000000, 1, 2, 3, 4, 5, 6, 7, 8, 9, 4278255615],
    [0] * 24,
]


def rows_of(programs):
    return [[LABEL + str(number)] + [str(value) for value in values]
            for number, values in enumerate(programs, start=1)]


def save(name, rows):
    text = "".join("\t".join(fields) + "\n" for fields in [HEADER] + rows)
    Path(__file__).with_name(name).write_bytes(b"\xff\xfe" + text.encode("utf-16-le"))


save("PROG_7.txt", rows_of(PROGRAMS))
save("PROG_template.txt", rows_of([[0] * 24] * 3))
save("PROG_0.txt", [])
