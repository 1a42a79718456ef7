#include "exports/table.h"

namespace exports {

namespace {

std::vector<exported> frame()
{
    exported version{signature_of("version", typeid(const char*())), {}, {}, 0};
    version.allocates = false;
    version.run = [](arguments&) { return std::string(tessalo2d::version()) == "5.1.0.0" ? 0 : 1; };
    return {version};
}

} // namespace

const std::vector<exported>& table()
{
    static const std::vector<exported> all = [] {
        std::vector<exported> rows;
        for (const auto& family : {frame, measures, conversions, splits, extrusions, grids,
                                   connectivity, interpolations, curvatures})
            for (exported& e : family()) rows.push_back(std::move(e));
        return rows;
    }();
    return all;
}

} // namespace exports
