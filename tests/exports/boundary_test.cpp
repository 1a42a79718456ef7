// Every exported function at the boundary of its arguments: the first step that ends a call decides
// its status and what the outputs hold, whatever else is wrong.
#include "exports/breakage.h"
#include "exports/outcome.h"
#include "exports/table.h"
#include "support/allocation.h"

#include <gtest/gtest.h>

using namespace exports;

namespace {

/// Wild counts ask for more than any of the small meshes needs.
constexpr std::size_t MEMORY = std::size_t(1) << 22;

/// Makes the call with these arguments.
void expect_contract(const exported& e, arguments& a, bool wild, const std::string& told)
{
    const std::vector<picture> pictures = a.pictures();
    const step* const end = e.first_end(a);
    const support::limited_memory small_machine(MEMORY);
    const int status = e.run(a);
    EXPECT_TRUE(wild || end || status != -199) << e.signature << "\n  " << told;
    expect_outcome(e, pictures, a, end, status, told);
}

class Exports : public testing::TestWithParam<std::size_t> {
protected:
    const exported& e = table()[GetParam()];
};

std::string test_name(const testing::TestParamInfo<std::size_t>& info)
{
    const std::string& s = table()[info.param].signature;
    const std::size_t begin = s.rfind(':', s.find('(')) + 1;
    return s.substr(begin, s.find('(') - begin) + "_" + std::to_string(info.param);
}

} // namespace

TEST_P(Exports, MeetTheirContractOnEmptyArguments)
{
    for (const bool keep_rows : {false, true}) {
        arguments a(e.slots);
        empty_all(a, keep_rows);
        expect_contract(e, a, false, keep_rows ? "all without columns" : "all empty");
    }
}

TEST_P(Exports, MeetTheirContractOnOneElement)
{
    arguments a(e.slots);
    keep_one_element(a);
    EXPECT_EQ(e.first_end(a), nullptr);
    const arguments before(a);
    expect_contract(e, a, false, "one element");
    if (!a.has("boundary") && !a.has("ids")) return;
    // The grid of one cell has that cell and no node inside.
    const std::pair<const char*, std::size_t> news[] = {
        {"connectQ", 1}, {"connectT", 2}, {"coords", 0}, {"sizes", 0}, {"metrics", 0}};
    for (const auto& [grown, columns] : news)
        EXPECT_TRUE(!a.has(grown) || a.cols(grown) == before.cols(grown) + columns) << grown;
}

TEST_P(Exports, ReportTheArgumentThatIsBroken)
{
    for (const breakage& b : breakages(e)) {
        arguments a(e.slots);
        b.apply(a);
        expect_contract(e, a, b.wild, b.about);
    }
}

TEST_P(Exports, ReportTheFirstOfTwoBrokenArguments)
{
    const std::vector<breakage> all = breakages(e);
    for (std::size_t i = 0; i < all.size(); ++i) {
        arguments once(e.slots);
        all[i].apply(once);
        for (std::size_t j = 0; j < all.size(); ++j) {
            // The order counts where both break one argument.
            if (j == i || (j < i && all[j].place != all[i].place)) continue;
            arguments a(once);
            all[j].apply(a);
            expect_contract(e, a, all[i].wild || all[j].wild,
                            all[i].about + " and " + all[j].about);
            if (HasFailure()) return;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, Exports, testing::Range(std::size_t(0), table().size()), test_name);
