#include "exports/contract.h"

#include <algorithm>
#include <cxxabi.h>
#include <memory>

namespace exports {

namespace {

bool is_empty(const arguments& a, const std::string& name)
{
    return a.rows(name) == 0 || a.cols(name) == 0;
}

} // namespace

step nothing_to_do(const std::string& about, std::function<bool(const arguments&)> so)
{
    return {about, std::move(so), 0};
}

step refuse(const std::string& about, std::function<bool(const arguments&)> so, int status)
{
    return {about, std::move(so), status};
}

step none_if_empty(const std::string& name)
{
    return nothing_to_do(name + " is empty",
                         [name](const arguments& a) { return is_empty(a, name); });
}

step none_without_columns(const std::string& name)
{
    return nothing_to_do(name + " has no columns",
                         [name](const arguments& a) { return a.cols(name) == 0; });
}

step none_at_zero(const std::string& name)
{
    return nothing_to_do(name + " is 0",
                         [name](const arguments& a) { return a.get<unsigned>(name) == 0; });
}

step rows(const std::string& name, std::initializer_list<std::size_t> accepted, int status)
{
    return refuse(
        "rows of " + name,
        [name, counts = std::vector<std::size_t>(accepted)](const arguments& a) {
            return std::count(counts.begin(), counts.end(), a.rows(name)) == 0;
        },
        status);
}

step takes(const std::string& name, std::initializer_list<std::size_t> accepted, int status)
{
    return refuse(
        "rows of " + name,
        [name, other = rows(name, accepted, status)](const arguments& a) {
            return !is_empty(a, name) && other.ends(a);
        },
        status);
}

step typed_IDs(const std::string& name, element_type type, const std::string& counted, int status)
{
    return refuse(
        "IDs of " + name,
        [=](const arguments& a) { return !good_IDs(a.get<IDs>(name), type, a.cols(counted)); },
        status);
}

step IDs_or_unset(const std::string& name, const std::string& counted, int status)
{
    return refuse(
        "IDs of " + name,
        [=](const arguments& a) { return !good_or_unset(picture_of(a[name]), a.cols(counted)); },
        status);
}

step listed_IDs(const std::string& name, const std::string& counted, int status)
{
    return refuse(
        "IDs of " + name,
        [=](const arguments& a) { return !good_list(a.get<ID_list>(name), a.cols(counted)); },
        status);
}

step shape_of(const std::string& name, const std::string& other, int status)
{
    return refuse(
        "shape of " + name,
        [=](const arguments& a) {
            return a.rows(name) != a.rows(other) || a.cols(name) != a.cols(other);
        },
        status);
}

step columns_of(const std::string& name, const std::string& other, int status)
{
    return refuse(
        "columns of " + name, [=](const arguments& a) { return a.cols(name) != a.cols(other); },
        status);
}

step above_zero(const std::string& name, int status)
{
    return refuse(
        name + " above 0", [name](const arguments& a) { return !(a.get<double>(name) > 0.0); },
        status);
}

step pattern_checked(int status)
{
    return refuse(
        "pattern",
        [](const arguments& a) {
            const int pattern = a.get<int>("pattern");
            return pattern != 0 && pattern != 1 && pattern != 2;
        },
        status);
}

std::optional<std::size_t> rows_of_type(element_type type)
{
    constexpr std::size_t COUNTS[] = {0, 1,  2, 2,  3,  4, 3,  4,  6, 8,  9, 8,
                                      4, 10, 5, 13, 14, 6, 15, 18, 8, 20, 27};
    const auto code = static_cast<unsigned>(type);
    if (code >= std::size(COUNTS)) return std::nullopt;
    return COUNTS[code];
}

bool good_IDs(const IDs& m, element_type type, std::size_t bound)
{
    if (m.rows == 0 || m.cols == 0) return true;
    const bool any_face = type == ELEMENT_ANY_FACE;
    if (any_face ? m.rows != 3 && m.rows != 4 : rows_of_type(type) != m.rows) return false;
    for (std::size_t j = 0; j < m.cols; ++j)
        for (std::size_t i = 0; i < m.rows; ++i) {
            if (any_face && i == 3 && m(i, j) == UNSET_ID) continue;
            if (m(i, j) == UNSET_ID || m(i, j) >= bound) return false;
        }
    return true;
}

bool good_or_unset(const picture& m, std::size_t bound)
{
    return std::all_of(m.bits.begin(), m.bits.end(),
                       [&](std::uint64_t id) { return id < bound || id == UNSET_ID; });
}

bool good_list(const ID_list& v, std::size_t bound)
{
    for (std::size_t i = 0; i < v.size; ++i)
        if (v[i] >= bound) return false;
    return true;
}

const step* exported::first_end(const arguments& a) const
{
    for (const step& s : steps)
        if (s.ends(a)) return &s;
    return nullptr;
}

std::string signature_of(const std::string& name, const std::type_info& function)
{
    int failed = 0;
    const std::unique_ptr<char, void (*)(void*)> text(
        abi::__cxa_demangle(function.name(), nullptr, nullptr, &failed), std::free);
    const std::string type = failed ? std::string(function.name()) : std::string(text.get());
    const std::size_t list = type.find('(');
    return "vorel::tessalo2d::" + name + type.substr(list == std::string::npos ? 0 : list);
}

} // namespace exports
