// The parts of the extrusion frame that do not depend on the motion.
#include "extrusion/frame.h"

namespace vorel::tessalo2d {

int check_extrusion(const extrusion_contract& contract, const layer_request& layers, int pattern,
                    const extrusion_arguments& on)
{
    const auto& [coords, connect, output] = on;
    // A check that the overload does not make holds.
    const auto fails = [](int argument, bool holds) { return argument != 0 && !holds; };

    if (!has_rows(coords, 2, contract.most_rows)) return bad_argument(1);
    if (!tessalo::check_IDs(connect, ELEMENT_E2, node_bound(coords)))
        return bad_argument(contract.bad_connect);
    if (fails(contract.bad_h0, layers.h0 > 0.0)) return bad_argument(contract.bad_h0);
    if (fails(contract.bad_h1, layers.h1 > 0.0)) return bad_argument(contract.bad_h1);
    if (fails(contract.bad_pattern, static_cast<unsigned>(pattern) <= 2))
        return bad_argument(contract.bad_pattern);
    if (!takes_rows(output, contract.output_rows)) return bad_argument(contract.bad_output);
    return success;
}

bool all_IDs_suffice(const extrusion_contract& contract, const node_map& map, unsigned N,
                     const extrusion_arguments& on)
{
    const std::size_t per_layer =
        contract.element == swept_element::Q4 ? Q4_PER_LAYER : T3_PER_LAYER;
    return IDs_suffice(on.coords.cols, map.size(), N) &&
           IDs_suffice(on.output.cols, on.connect.cols, per_layer * N);
}

int extrude_elements(const extrusion_contract& contract, const node_map& map, unsigned N,
                     int pattern, const extrusion_arguments& on)
{
    return contract.element == swept_element::Q4
               ? extrude_elements_Q4(on.connect, map, N, on.output)
               : extrude_elements_T3(on.connect, map, N, pattern, on.output);
}

void undo_extrusion(const extrusion_contract& contract, std::size_t coords_rows,
                    std::size_t coords_cols, std::size_t output_cols, const extrusion_arguments& on)
{
    const bool two = contract.restored == restored_rows::TWO;
    // Neither resize grows, so neither can fail.
    (void)on.output.resize(on.output.rows, output_cols);
    (void)on.coords.resize(two ? 2 : coords_rows, coords_cols);
}

} // namespace vorel::tessalo2d
