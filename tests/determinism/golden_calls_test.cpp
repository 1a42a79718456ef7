// The calls that are compared between builds: none is missing, and within one build they repeat.
#include "golden_calls.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>

using namespace golden;

namespace {

/// Names of the exported functions of the library's namespace, with how often each occurs.
std::map<std::string, int> exported()
{
    std::map<std::string, int> names;
    std::ifstream list(EXPORTED_FUNCTIONS);
    const std::string scope = "vorel::tessalo2d::";
    for (std::string text; std::getline(list, text);)
        if (text.compare(0, scope.size(), scope) == 0)
            ++names[text.substr(scope.size(), text.find('(') - scope.size())];
    return names;
}

results all_results(const inputs& in)
{
    results out;
    for (const golden_call& call : all_calls()) call.run(call.function, in, out);
    return out;
}

} // namespace

TEST(GoldenCalls, HoldEveryExportedFunctionOnce)
{
    std::map<std::string, int> called;
    std::set<std::string> unique;
    for (const golden_call& call : all_calls()) {
        const std::string name = call.function;
        ++called[name.substr(0, name.find('('))];
        EXPECT_TRUE(unique.insert(name).second) << name;
    }
    EXPECT_EQ(unique.size(), 55u);
    EXPECT_EQ(called, exported());
}

TEST(GoldenCalls, SucceedWithResultsForEveryFunction)
{
    const inputs in = make_inputs();
    for (const golden_call& call : all_calls()) {
        results out;
        call.run(call.function, in, out);
        int succeeded = 0;
        for (const entry& e : out.entries) {
            const std::string& label = out.labels[e.label];
            const bool is_status = label.compare(label.rfind('\t') + 1, 6, "status") == 0;
            if (is_status) succeeded += static_cast<std::int64_t>(e.bits) >= 0;
        }
        // Kept: the matrix form leaves every field as it is.
        const bool idle = std::strcmp(call.function, "interpolate(matrix)") == 0;
        EXPECT_EQ(out.written() == 0, idle) << call.function;
        if (std::strcmp(call.function, "version") != 0) {
            EXPECT_GE(succeeded, 3) << call.function;
        }
    }
}

TEST(GoldenCalls, RepeatBitForBit)
{
    const results first = all_results(make_inputs());
    const results second = all_results(make_inputs());
    EXPECT_GT(first.entries.size(), 100000u);
    EXPECT_TRUE(first == second);
}

TEST(GoldenCalls, GiveTheSameWhereColumnsStandApart)
{
    const results all = all_results(make_inputs());
    std::map<std::string, std::vector<std::uint64_t>> numbers;
    for (const entry& e : all.entries) numbers[all.labels[e.label]].push_back(e.bits);
    const std::string spread = ", spread";
    std::size_t compared = 0;
    for (const auto& [label, values] : numbers) {
        const std::size_t at = label.find(spread);
        if (at == std::string::npos) continue;
        std::string dense = label;
        dense.erase(at, spread.size());
        ASSERT_TRUE(numbers.count(dense)) << dense;
        EXPECT_EQ(values, numbers[dense]) << label;
        ++compared;
    }
    EXPECT_GT(compared, 200u);
}
