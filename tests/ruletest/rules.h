// Rule tests written as patterns: every function adds an instruction to one growing program and
// gives its index, so that Adj(Ptr(0), AngleBrkt(Eq(Field(0), Int('h')))) is what it looks like.
// Running a test uses the program up.
#ifndef MLDS_TESTS_RULETEST_RULES_H
#define MLDS_TESTS_RULETEST_RULES_H

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "support/tiers.h"

namespace mlds_test {

class Rules : public ::testing::Test, public CPlexaTestObserver {
public:
    enum Variable { x, y, t, u, none };

    int Op(int opcode, int b1 = 0, int b2 = 0, int b3 = 0, int b4 = 0) {
        m_program.push_back({Low(opcode), Low(b1), Low(b2), Low(b3), Low(b4)});
        return static_cast<int>(m_program.size()) - 1;
    }
    void Link(int index, int byte, int to) {
        m_program[static_cast<std::size_t>(index)][static_cast<std::size_t>(byte)] = Low(to);
    }
    int Int(int value, int opcode = 22) {
        return Op(opcode, value >> 24, value >> 16, value >> 8, value);
    }
    int Plexa(int stream, int a, int next = 0) { return Op(1, stream, 0, a, next); }
    int Anchor(int a, int direction = 0, int drop = 0) { return Op(3, a, direction, drop); }
    int Or(int a, int b) { return Op(4, 0, a, b); }
    int And(int a, int b) { return Op(5, 0, a, b); }
    int Not(int a, int next = 0) { return Op(6, 0, a, 0, next); }
    int Adj(int a, int b, int next = 0) { return Op(7, 0, a, b, next); }
    int Star(int a, int limit, int next = 0) { return Op(8, 0, a, limit, next); }
    int Stars(int a, int limit, int next = 0) { return Op(9, 0, a, limit, next); }
    int StarsNoBkup(int a, int next = 0) { return Op(10, 0, a, 0, next); }
    int Qmark(int a, int next = 0) { return Op(14, 0, a, 0, next); }
    int Qmarks(int a, int next = 0) { return Op(15, 0, a, 0, next); }
    int Negate(int a) { return Op(16, 0, a); }
    int Mult(int a, int b) { return Op(17, 0, a, b); }
    int Div(int a, int b) { return Op(18, 0, a, b); }
    int Add(int a, int b) { return Op(19, 0, a, b); }
    int Field(int field = 0) { return Int(field, 23); }
    int Eq(int a, int b) { return Op(26, 0, a, b); }
    int NotEq(int a, int b) { return Op(27, 0, a, b); }
    int Lt(int a, int b) { return Op(28, 0, a, b); }
    int Gt(int a, int b) { return Op(30, 0, a, b); }
    int AngleBrkt(int condition = 0, int next = 0) { return Op(32, 0, condition, 0, next); }
    int Tok(int variable, int field, int next = 0) { return Op(33, variable, field, 0, next); }
    int Ptr(int variable) { return Int(variable, 34); }
    int AssignPtr(int variable, int next = 0) { return Op(35, 0, variable >> 8, variable, next); }
    int AssignTok(int variable, int next = 0) { return Op(36, 0, variable >> 8, variable, next); }
    int NameEq(int a, int b, int next = 0) { return Op(38, 0, a, b, next); }
    int RightContext(int stream, int a) { return Op(40, 0, stream, a); }
    int LeftContext(int stream, int a) { return Op(41, 0, stream, a); }
    int MoveRight(int stream, int a) { return Op(42, 0, stream, a); }
    int MoveLeft(int stream, int a) { return Op(43, 0, stream, a); }
    int TimeMoveRight(int a) { return Op(44, 0, a); }
    int TimeMoveLeft(int a) { return Op(45, 0, a); }
    int AdjacencyTest(int next = 0) { return Op(49, 0, 0, 0, next); }
    int SyncTest(int stream, int next = 0) { return Op(50, 0, stream, 0, next); }
    int ParentPtr(int variable, int field = 0, int next = 0, int opcode = 51) {
        return Op(opcode, 0, Int(variable), field, next);
    }
    int Limit(int variable) { return Op(0, 0, Int(variable)); }

    // Patterns made of these.
    int Stay() { return Or(0, 0); }
    int Fail() { return Eq(Int(0), Int(1)); }
    int Is(int c) { return Eq(Field(), Int(c)); }
    /// Matches without moving, and is seen: its letter and the direction go to m_seen.
    int See(char letter) { return Op(4, letter); }
    /// Any token, as an element that does not end its sequence.
    int Any() { return Gt(Field(), Int(-1)); }
    /// Fails at a token `c`, having moved over it; else a token, like Any.
    int Unless(int c) { return NotEq(Field(), Int(c)); }

    /// Runs a test in the stream, observed and not, which must not make a difference.
    bool Test(int focus, int left = 0, int right = 0, int stream = 0) {
        m_focus = focus;
        const int constant = Int(stream, 0xEE);
        m_program[0] = {0xEE, Low(constant), Low(left), Low(right), Low(focus)};
        const std::size_t n = m_program.size();
        const std::unique_ptr<unsigned char[][5]> program(new unsigned char[n][5]);
        std::memcpy(program.get(), m_program.data(), n * 5);
        m_program.resize(2);
        m_seen.clear();
        if (!m_bWatched) return m_tiers.plexa.Test("rule", program.get(), 0);
        const Bound before = GetBound();
        m_tiers.plexa.SetTestObserver(this);
        const bool bHolds = m_tiers.plexa.Test("rule", program.get(), 0);
        m_tiers.plexa.SetTestObserver(nullptr);
        const Bound bound = GetBound();
        SetBound(before);
        EXPECT_EQ(m_tiers.plexa.Test("rule", program.get(), 0), bHolds);
        EXPECT_EQ(GetBound(), bound);
        return bHolds;
    }
    /// Matches a pattern from a place, to the right or ("inp.2<") to the left. Says where it ends,
    /// or "no"; with "!" if it says that the whole sequence has matched; then what was seen and
    /// what y and t were bound to, which is undone.
    std::string From(std::string place, int pattern) {
        const bool bRight = place.back() != '<';
        if (!bRight) place.pop_back();
        m_x = m_tiers.MarkAt(place);
        const Bound before = GetBound();
        m_last = See('.');
        const int sequence = bRight ? Adj(Ptr(x), pattern, m_last) : Adj(pattern, Ptr(x), m_last);
        m_bLast = false;
        Test(Anchor(sequence, bRight ? 0 : 1, 1), 0, 0, m_x->GetStream()->GetStreamIndex());
        std::string result = m_end + (m_end == "no" || m_bLast ? "" : "!");
        if (!m_seen.empty()) result += " " + m_seen;
        if (GetBound().y != before.y) result += " y=" + Where(m_y);
        if (GetBound().t != before.t) result += std::string(" t=") + m_t->GetNameField();
        SetBound(before);
        m_last = -1;
        return result;
    }
    struct Row {
        const char* place;
        int pattern;
        const char* expected;
    };
    void Check(const std::vector<Row>& rows) {
        const auto program = m_program;
        for (const Row& row : rows) {
            m_program = program;
            EXPECT_EQ(From(row.place, row.pattern), row.expected) << "row " << &row - rows.data();
        }
    }

    void SetUp() override {
        m_tiers.TieAll("inp.0=phone.0=word.0 phone.1=word.1 inp.2=phone.2 inp.4=phone.4=word.2");
        m_list.AddSyncMarkPtr("x", &m_x);
        m_list.AddSyncMarkPtrPtr("y", &m_y);
        m_list.AddTokenPtr("t", &m_t);
        m_list.AddTokenPtr("u", &m_u);
        m_list.AddSyncMarkPtr("none", &m_none);
    }
    void TearDown() override { CStream::DiscardStreamObj(m_t); }

    void BeforeInstruction(const CPlexaTestStep& step) override {
        const int letter = step.instruction[0] == 4 ? step.instruction[1] : 0;
        if (step.index == m_last) {
            m_bLast = true;
        } else if (letter != 0) {
            m_seen += {static_cast<char>(letter), step.direction == sdRight ? '>' : '<'};
        }
    }
    void AfterInstruction(const CPlexaTestStep& step, PTestFuncReturnType result) override {
        if (step.index == m_focus) m_end = (result.value & 0xFF) != 0 ? Where(step.position) : "no";
    }

    Tiers m_tiers{{"inp", "||h|o|l|a||"}, {"phone", "||o||l|a||"}, {"word", "||w|v||"}};
    CSyncMark* m_x = nullptr;
    CSyncMark* m_y = nullptr;
    CSyncMark* m_none = nullptr;
    CToken* m_t = m_tiers["inp"]->CreateToken("o");  // in no stream
    CToken* m_u = nullptr;
    CVarList m_list{&m_tiers.plexa};
    std::string m_seen;
    bool m_bWatched = true;

private:
    struct Bound {
        CSyncMark* y;
        int t;
        bool operator==(const Bound&) const = default;
    };
    Bound GetBound() { return {m_y, m_t->GetFieldValueIndex(0)}; }
    void SetBound(const Bound& bound) {
        m_y = bound.y;
        m_t->SetFieldValue(0, bound.t);
    }
    static unsigned char Low(int byte) { return static_cast<unsigned char>(byte & 0xFF); }

    // Instruction 1 stays unused: a focus whose byte 2 links there would run to the left.
    std::vector<std::array<unsigned char, 5>> m_program{2};
    int m_focus = 0;
    int m_last = -1;
    bool m_bLast = false;
    std::string m_end;
};

}  // namespace mlds_test

#endif
