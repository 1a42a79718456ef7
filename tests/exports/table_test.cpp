// The table itself: it names every exported function, and its valid arguments are valid.
#include "exports/breakage.h"
#include "exports/outcome.h"
#include "exports/table.h"

#include <gtest/gtest.h>

#include <fstream>
#include <set>

using namespace exports;

namespace {

constexpr std::size_t EXPORTS = 55;

/// The functions of the namespace in the list of symbols that the shared library may show.
std::multiset<std::string> listed()
{
    std::multiset<std::string> names;
    std::ifstream list(EXPORTED_SYMBOLS);
    for (std::string line; std::getline(list, line);)
        if (line.rfind("vorel::tessalo2d::", 0) == 0) names.insert(line);
    return names;
}

} // namespace

TEST(Table, NamesEveryExportedFunctionOnce)
{
    std::multiset<std::string> named;
    for (const exported& e : table()) named.insert(e.signature);
    EXPECT_EQ(named.size(), EXPORTS);
    EXPECT_EQ(named, listed());
}

TEST(Table, HoldsArgumentsThatAreServed)
{
    for (const exported& e : table()) {
        arguments a(e.slots);
        const std::vector<picture> before = a.pictures();
        ASSERT_EQ(e.first_end(a), nullptr) << e.signature;
        const int status = e.run(a);
        EXPECT_EQ(status, e.status) << e.signature;
        expect_outcome(e, before, a, nullptr, status, "valid");
    }
}

TEST(Table, HoldsLargerArgumentsThatAreServed)
{
    for (const exported& e : table()) {
        arguments a(e.slots);
        e.enlarge(a);
        const std::vector<picture> before = a.pictures();
        ASSERT_EQ(e.first_end(a), nullptr) << e.signature;
        expect_outcome(e, before, a, nullptr, e.run(a), "larger");
    }
}

TEST(Table, ReachesEveryStepByTwoChanges)
{
    // A step that no breakages meet would be a line that proves nothing.
    for (const exported& e : table()) {
        std::set<const step*> met;
        const std::vector<breakage> all = breakages(e);
        for (const breakage& first : all) {
            if (met.size() == e.steps.size()) break;
            for (const breakage& second : all) {
                arguments a(e.slots);
                first.apply(a);
                second.apply(a);
                if (const step* const end = e.first_end(a)) met.insert(end);
            }
        }
        for (const step& s : e.steps)
            EXPECT_EQ(met.count(&s), 1u) << e.signature << ": " << s.about;
    }
}
