// The tiers of a host of rules, as they are shown.
#include "lanes.h"

#include <algorithm>

namespace mlds_program {

using mlds::rules::Model;
using mlds::rules::Tier;
using mlds::rules::TierId;

namespace {

// Marks of "show" stand for what people look for, such as stress.
bool HasMarks(const Model& model, TierId tier) {
    const bool bMarks = std::ranges::any_of(
        model.showMarks, [&](const auto& mark) { return mark.tier == tier && !mark.bIpa; });
    const bool bByOthers =
        std::ranges::any_of(model.showBy, [&](const auto& show) { return show.tier == tier; });
    return bMarks && !bByOthers;
}

}  // namespace

mlds::io::View LanesOf(mlds::RuleHost& host, bool bIpa) {
    const Model& model = host.rules().model();
    mlds::io::View view{host.plexa(), {}, nullptr};
    for (std::size_t i = 0; i < model.tiers.size(); ++i) {
        const Tier& tier = model.tiers[i];
        const auto id = static_cast<TierId>(i);
        mlds::io::Lane& lane = view.lanes.emplace_back();
        lane.name = tier.name;
        lane.pStream = view.plexa.pStream(id);
        lane.label = [&host, bIpa](const mlds::io::Interval& interval) {
            return host.Label(interval.pToken, bIpa);
        };
        if (HasMarks(model, id)) {
            lane.highlighted = [&host](CToken* pToken) {
                const char* name = pToken->GetNameField();
                return name != nullptr && host.Label(pToken, false) != name;
            };
        }
        lane.bText = tier.kind == Tier::Kind::text;
        lane.bGuides = tier.kind == Tier::Kind::spans;
        if (tier.kind == Tier::Kind::time && view.pTime == nullptr) view.pTime = lane.pStream;
    }
    return view;
}

}  // namespace mlds_program
