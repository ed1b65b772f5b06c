// What an application has told a copier to do its own way.
// Asking the rules is the business of collecting and of pasting.
#pragma once

#include "util/rule_map.h"

#include <kelm/copier.h>

namespace kelm {

struct copier_rules {
    using type_pair = std::pair<u32, u32>; // of an owner and of a child

    rule_map<u32, copy_rule> copy;
    rule_map<u32, paste_rule> paste;
    rule_map<u32, property_paste_rule> property_paste;
    rule_map<type_pair, object_order_rule> order;
    std::shared_ptr<end_transaction_rule> end;
    std::multimap<u32, u32> extra_properties; // type to property
};

} // namespace kelm
