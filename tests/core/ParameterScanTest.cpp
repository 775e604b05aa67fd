#include "part21/ParameterScan.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

using namespace KP_SDAI;
using Result = ParameterScan::Result;

namespace {

struct Case {
    const char* parameters; ///< of a record from the second one on; '|' is where the next statement begins
    Result result;
};

constexpr Case kCases[] = {
    {"#1,$,*,.T.,-1.5E-3,(1.,2.),());|", Result::sound},
    {"( ( 1 ) ,\n( 2 , 3 ) ) ) \n ;|", Result::sound},
    {"IFCLABEL('x'),((1),(2),((3))));|", Result::sound},
    {"'it''s','a/b=c;)(,,',\"0F\");|", Result::sound},
    {"'',' ','\\X\\41','\\\\');|", Result::sound},
    {"'a line\nand another');|", Result::sound},
    {"1/* , ) ; */,2)/*'*/;|", Result::sound},
    {"1);|#2=(,);", Result::sound},
    {"'a line\n#2= IFCWALL(1);');", Result::odd},
    {"1,,2);", Result::odd},
    {"1, ,2);", Result::odd},
    {"1,);", Result::odd},
    {"(,1));", Result::odd},
    {"( ,1));", Result::odd},
    {"(1);", Result::odd},
    {"1));", Result::odd},
    {"1)2;", Result::odd},
    {"1)(2);", Result::odd},
    {"1;2);", Result::odd},
    {"1=2);", Result::odd},
    {"'\\X\\41,'',1);", Result::cut},
    {"'1);", Result::cut},
    {"1,(2,3)", Result::cut},
    {"1)", Result::cut},
    {"1/*);", Result::cut},
};

// A first parameter of every length moves what is looked for over the edges of whatever is looked at at once.
TEST(ParameterScanTest, EveryWayTellsTheSame) {
    ASSERT_FALSE(ParameterScan::ways().empty());
    for (const Case& each : kCases) {
        for (std::size_t length = 0; length < 140; ++length) {
            for (const char filler : {'7', ' ', '('}) {
                std::string record = "('" + std::string(length, filler) + "'," + each.parameters;
                const std::size_t behind = record.find('|');
                if (behind != std::string::npos) record.erase(behind, 1);
                const std::size_t size = record.size();
                record.append(ParameterScan::kZeros, '\0');
                for (const ParameterScan::Pass pass : ParameterScan::ways()) {
                    const char* place = record.data();
                    ASSERT_EQ(pass(place, record.data() + size), each.result) << record;
                    const std::size_t expected = each.result == Result::sound ? behind : 0;
                    ASSERT_EQ(static_cast<std::size_t>(place - record.data()), expected) << record;
                }
            }
        }
    }
}

} // namespace
