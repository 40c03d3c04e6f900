// Rule tests of any bytes over a small structure, with variables and fences.
//
// Half of the inputs are well-formed as far as that goes: opcodes that exist, links that lie in an
// array as short as the program. Whatever a test does, the structure stays as it was, no mark stays
// free of its fence, and variables are assigned all or not at all. Watching a test changes nothing.
#include <array>
#include <memory>
#include <utility>

#include "input.h"
#include "support/tiers.h"

using mlds_fuzz::Input;
using mlds_fuzz::Require;
using mlds_test::Tiers;

namespace {

constexpr std::size_t kMostBytes = 1400;
constexpr std::size_t kSpan = 256;
constexpr std::array kOpcodes{1,  3,  4,  5,  6,  7,  8,  9,  10, 14, 15, 16,
                              17, 18, 19, 22, 23, 26, 27, 28, 32, 33, 34, 34,
                              35, 36, 38, 40, 41, 42, 43, 44, 45, 49, 50, 51};
constexpr std::array kPlaces{"inp.0",  "inp.1",     "inp.3",  "phone.1",   "phone.2",
                             "word.0", "phone.end", "word.2", "inp.start", "null"};
// What runs for longer is stopped here: the interpreter's own limit takes seconds.
constexpr int kMostInstructions = 50000;

class Runner : public CPlexaTestObserver {
public:
    explicit Runner(Input in) : m_in(in) {
        m_tiers.TieAll("inp.0=phone.0=word.0 phone.1=word.1 inp.2=phone.2 inp.3=phone.4=word.2");
        m_tiers.plexa.RankPopulatedStreams();
        if (m_in.Flag()) m_tiers.plexa.SetDefaultTimeStream(m_tiers["phone"]);
        if (m_in.Flag()) m_pLoose = m_tiers["word"]->RemoveStreamObj(m_tiers.At("word.2"), false);
        m_list.AddSyncMarkPtr("x", &m_x);
        m_list.AddSyncMarkPtrPtr("y", &m_y);
        m_list.AddTokenPtr("t", &m_pToken);
        m_list.AddTokenPtr("u", &m_pNoToken);
        for (CSyncMark** pp : {&m_x, &m_y}) *pp = Place();
        m_list.SetFence(m_in.Flag() ? "phone" : m_in.Flag() ? "inp word" : "");
        ReadProgram();
        Run();
    }
    ~Runner() {
        CStream::DiscardStreamObj(m_pToken);
        CStream::DiscardStreamObj(m_pLoose);
    }

private:
    CSyncMark* Place() {
        const unsigned n = m_in.Below(16);
        if (n == 15) return static_cast<CSyncMark*>(m_pLoose);
        const std::string place = kPlaces[n % kPlaces.size()];
        return m_pLoose != nullptr && place == "word.2" ? nullptr : m_tiers.MarkAt(place);
    }

    void ReadProgram() {
        const bool bWellFormed = m_in.Flag();
        const std::size_t n = bWellFormed ? 2 + m_in.Below(kSpan - 2) : kSpan;
        m_nBase = m_in.Flag() ? 3 : 0;
        m_nBytes = (n + static_cast<std::size_t>(m_nBase)) * 5;
        m_program.reset(new unsigned char[m_nBytes / 5][5]());
        for (std::size_t i = 0; i < n && !m_in.IsOver(); ++i) {
            unsigned char* p = m_program[i + static_cast<std::size_t>(m_nBase)];
            for (int k = 0; k < 5; ++k) p[k] = static_cast<unsigned char>(m_in.Byte());
            if (!bWellFormed) continue;
            p[0] = static_cast<unsigned char>(kOpcodes[p[0] % kOpcodes.size()]);
            for (int k = 1; k < 5; ++k) p[k] = static_cast<unsigned char>(p[k] % n);
            const bool bNumber = p[0] == 22 || p[0] == 23 || p[0] == 34;
            if (i > 0 && bNumber) p[1] = p[2] = p[3] = 0;
        }
    }

    bool Test() { return m_tiers.plexa.Test("fuzz", m_program.get(), m_nBase); }

    void Run() {
        CSyncMark* const x = m_x;
        CSyncMark* const y = m_y;
        const std::string before = mlds_test::Dump(m_tiers.plexa, true);
        m_tiers.plexa.SetTestObserver(this);
        const bool bHolds = Test();
        m_tiers.plexa.SetTestObserver(nullptr);
        Require(mlds_test::Dump(m_tiers.plexa, true) == before, "a test changed the structure");
        Require(m_x == (bHolds && m_list.IsDirty(0) ? m_pending[0] : x), "x is wrong");
        Require(m_y == (bHolds && m_list.IsDirty(1) ? m_pending[1] : y), "y is wrong");
        Require(m_pToken->GetFieldValueIndex(0) == (bHolds && m_list.IsDirty(2) ? m_nToken : 'o'),
                "the token is wrong");
        for (int i = 0; i < m_tiers.plexa.GetNumStreams(); ++i) {
            for (CStreamObj* p : mlds_test::Chain(m_tiers.plexa.pStream(i))) {
                const bool bMark = p->GetObjectType(otSyncMark);
                const bool bHeld = bMark && static_cast<CSyncMark*>(p)->IsSynchronousWithFence();
                const CStreamObj* pNext = bHeld ? nullptr : p->GetNextStreamObj();
                Require(p->GetAdjacentStreamObj(sdRight, true) == pNext, "a fence is open");
            }
        }
        if (m_nInstructions >= kMostInstructions) return;
        CSyncMark* const bound[] = {std::exchange(m_x, x), std::exchange(m_y, y)};
        const int value = m_pToken->GetFieldValueIndex(0);
        m_pToken->SetFieldValue(0, 'o');
        Require(Test() == bHolds, "watching a test changes its result");
        Require(m_x == bound[0] && m_y == bound[1] && m_pToken->GetFieldValueIndex(0) == value,
                "watching a test changes what it binds");
    }

    void BeforeInstruction(const CPlexaTestStep&) override { ++m_nDepth; }
    void AfterInstruction(const CPlexaTestStep&, PTestFuncReturnType) override {
        // Without opcodes, nothing matches any more.
        if (++m_nInstructions == kMostInstructions) std::fill_n(m_program[0], m_nBytes, '\0');
        if (--m_nDepth > 0) return;
        for (int i : {0, 1}) m_pending[i] = m_list.GetDupVarPtr(i);
        auto* pToken = static_cast<CToken*>(m_list.GetDupVarPtr(2));
        m_nToken = pToken != nullptr ? pToken->GetFieldValueIndex(0) : 'o';
    }

    Input m_in;
    Tiers m_tiers{{"inp", "||h|ol|a||"}, {"phone", "||o||l|a||"}, {"word", "||w|v||"}};
    CSyncMark* m_x = nullptr;
    CSyncMark* m_y = nullptr;
    CToken* m_pToken = m_tiers["inp"]->CreateToken("o");
    CToken* m_pNoToken = nullptr;
    CStreamObj* m_pLoose = nullptr;
    CVarList m_list{&m_tiers.plexa};
    std::unique_ptr<unsigned char[][5]> m_program;
    std::size_t m_nBytes = 0;
    int m_nBase = 0;
    CStreamObj* m_pending[2] = {};
    int m_nToken = 'o';
    int m_nInstructions = 0;
    int m_nDepth = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size <= kMostBytes) Runner(Input(data, size));
    return 0;
}
