// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <tuple>
#include <utility>

// What two workstations have made of the same record. The record's values come as std::tie() of its members, three
// times: as it was read, as it is to be written here, and as another workstation has stored it since.
namespace clivara {

// True when writing would replace something that was written elsewhere: a value that is stored otherwise than it was
// read and than it is to be written.
template <typename Values>
bool wouldReplace(const Values &read, const Values &mine, const Values &stored)
{
    return [&]<std::size_t... i>(std::index_sequence<i...>)
    {
        return ((std::get<i>(stored) != std::get<i>(read) && std::get<i>(stored) != std::get<i>(mine))
                || ...);
    }
    (std::make_index_sequence<std::tuple_size_v<Values>>());
}

// Values that were not touched here become what is stored; those that were touched stay.
template <typename Values, typename Others>
void takeUntouched(const Values &mine, const Others &read, const Others &stored)
{
    [&]<std::size_t... i>(std::index_sequence<i...>)
    {
        const auto take = [](auto &value, const auto &before, const auto &now) {
            if (value == before)
                value = now;
        };
        (take(std::get<i>(mine), std::get<i>(read), std::get<i>(stored)), ...);
    }
    (std::make_index_sequence<std::tuple_size_v<Values>>());
}

} // namespace clivara
