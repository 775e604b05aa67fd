#!/usr/bin/env python3
"""guide.py GUIDE TARGET: makes a test program of the C++ blocks of the guide.

Each block becomes a test in which `file` is the example, opened, and `model` its model; what it prints is compared with
the block "output" behind it, where there is one.
"""

import json
import re
import sys

PROLOGUE = """// Made of the guide by guide.py.
%s
#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <utility>

#pragma GCC diagnostic ignored "-Wshadow" // blocks may have a file of their own

struct GuideTest : testing::Test {
    GuideTest() { std::filesystem::current_path(KP_SOURCE_DIR "/examples"); }
};
"""

TEST = """
TEST_F(GuideTest, %(name)s) {
    KpIfcFile file;
    ASSERT_EQ(file.open("small_house.ifc"), KP::eOk) << file.error();
    [[maybe_unused]] KpIfcModel& model = *file.model();
    testing::internal::CaptureStdout();
    {
#line %(line)d "%(path)s"
%(code)s
    }
    std::string printed = testing::internal::GetCapturedStdout();
    while (!printed.empty() && printed.back() <= ' ') printed.pop_back();
    %(check)s
}
"""


def main():
    guide, target = sys.argv[1:]
    with open(guide, encoding="utf-8") as file:
        text = file.read()
    blocks = [(match[1], match[2], text[: match.start()].count("\n") + 2)
              for match in re.finditer(r"^```(\w+(?: \w+)?)\n(.*?)^```$", text, re.S | re.M)]
    program = PROLOGUE % next(code for kind, code, _ in blocks if kind == "cpp prologue")
    for index, (kind, code, line) in enumerate(blocks):
        if kind != "cpp":
            continue
        follows = blocks[index + 1] if index + 1 < len(blocks) else ("", "", 0)
        check = f"EXPECT_EQ(printed, {json.dumps(follows[1].rstrip())});" if follows[0] == "output" else ""
        program += TEST % {"name": f"Line{line}", "line": line, "path": guide, "code": code, "check": check}
    with open(target, "w", encoding="utf-8") as file:
        file.write(program)


main()
