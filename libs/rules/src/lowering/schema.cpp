// The names of a model's tiers, as tests use them.
#include "host/tiers.h"
#include "lowering/lowering.h"

namespace mlds::rules {

namespace {

mlds_testasm::SchemaField FieldOf(const Tier& tier, const Field& field) {
    mlds_testasm::SchemaField named;
    named.name = field.name;
    named.type = fvEnum;
    switch (field.kind) {
        case Field::Kind::name:
            named.values = tier.tokens;
            if (tier.kind == Tier::Kind::text || tier.kind == Tier::Kind::time) named.type = fvInt;
            break;
        case Field::Kind::feature:
            named.values = field.values;
            if (LeavesTokensOut(field)) named.values.emplace_back(kNoValue);
            break;
        case Field::Kind::number: named.type = fvInt; break;
    }
    return named;
}

}  // namespace

mlds_testasm::Schema SchemaOf(const Model& model, const std::vector<Variable>& variables) {
    mlds_testasm::Schema schema;
    for (const Tier& tier : model.tiers) {
        mlds_testasm::SchemaStream& stream = schema.streams.emplace_back();
        stream.name = tier.name;
        for (const Field& field : tier.fields) stream.fields.push_back(FieldOf(tier, field));
    }
    schema.variables = {{"at", false}, {"end", false}};
    for (const Variable& variable : variables) {
        schema.variables.push_back({variable.name, variable.bToken});
    }
    return schema;
}

}  // namespace mlds::rules
