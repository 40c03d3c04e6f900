// Conditions on one token as instructions. Equal ones are one instruction, whatever part of the
// rule asks: And, Or, Not and Eq all start again from the same position, so a condition means the
// same wherever it stands.
#include "lowering/patternlowering.h"

namespace mlds::rules {

namespace {

Opcode OpcodeOf(Comparison comparison) {
    switch (comparison) {
        case Comparison::notEqual: return Opcode::NotEq;
        case Comparison::less: return Opcode::Lt;
        case Comparison::lessOrEqual: return Opcode::Le;
        case Comparison::greater: return Opcode::Gt;
        case Comparison::greaterOrEqual: return Opcode::Ge;
        default: return Opcode::Eq;
    }
}

class ConditionLowering {
public:
    ConditionLowering(TestBuilder& builder, TierId tier) : m_builder(builder), m_tier(tier) {}

    // 0 stands for what always holds.
    NodeId Lower(const Condition& condition) {
        switch (condition.kind) {
            case Condition::Kind::all: return LowerAll(condition);
            case Condition::Kind::any: return LowerAny(condition);
            case Condition::Kind::isNot: return Not(Lower(condition.parts.at(0)));
            case Condition::Kind::compare:
                return m_builder.AddOnce(
                    OpcodeOf(condition.comparison),
                    {0, m_builder.FieldOf(m_tier, condition.field),
                     m_builder.Value(m_tier, condition.field, condition.value)});
            case Condition::Kind::sameAs:
                return m_builder.AddOnce(
                    Opcode::Tok, {kHostVariables + condition.variable, condition.field}, m_tier);
        }
        return 0;
    }

private:
    // An absent operand of And holds, so what always holds is left out.
    NodeId LowerAll(const Condition& condition) {
        NodeId all = 0;
        for (std::size_t i = condition.parts.size(); i-- > 0;) {
            const NodeId part = Lower(condition.parts[i]);
            if (part == 0) continue;
            all = all == 0 ? part : m_builder.AddOnce(Opcode::And, {0, part, all});
        }
        return all;
    }

    // None of no conditions holds. An Or without operands would hold, hence the Not.
    NodeId LowerAny(const Condition& condition) {
        NodeId any = 0;
        for (std::size_t i = condition.parts.size(); i-- > 0;) {
            const NodeId part = Lower(condition.parts[i]);
            if (part == 0) return 0;
            any = any == 0 ? part : m_builder.AddOnce(Opcode::Or, {0, part, any});
        }
        return condition.parts.empty() ? Not(0) : any;
    }

    // Not leaves its position where a failed operand left it unless something follows, hence the
    // rest that does nothing.
    NodeId Not(NodeId condition) {
        const NodeId what = condition == 0 ? m_builder.Done() : condition;
        return m_builder.AddOnce(Opcode::Not, {0, what, 0, m_builder.Done()});
    }

    TestBuilder& m_builder;
    const TierId m_tier;
};

}  // namespace

NodeId LowerCondition(TestBuilder& builder, const Condition& condition, TierId tier) {
    return ConditionLowering(builder, tier).Lower(condition);
}

}  // namespace mlds::rules
