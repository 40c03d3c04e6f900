// Calls of the container as text, so that tests are tables: what is given, a call, what is then.
#ifndef MLDS_TESTS_CONTAINER_CALLS_H
#define MLDS_TESTS_CONTAINER_CALLS_H

#include <gmock/gmock.h>

#include <iterator>
#include <memory>
#include <sstream>
#include <utility>

#include "support/tiers.h"

namespace mlds_test {

/// Carries out calls such as "Insert p.0 p.3 x": an operation, and its arguments as Where() tells
/// them, absent ones null. Directions are left, right and 7; "x" is a new token, "|" a new mark.
/// The operations that change something work on `pTarget`, at first the stream p.
struct Caller {
    explicit Caller(Tiers& tiers) : t(tiers), pTarget(tiers["p"]) {}
    /// The result: "1" and "0" for truth, places for objects.
    std::string operator()(const std::string& call);

    Tiers& t;
    CStream* pTarget;              // also what "?" means for a stream
    CStreamObj* pGiven = nullptr;  // what "?" means elsewhere
};

inline std::string Caller::operator()(const std::string& call) {
    std::istringstream in(call);
    const std::vector<std::string> words{std::istream_iterator<std::string>(in), {}};
    const auto word = [&](std::size_t i) { return i < words.size() ? words[i] : "null"; };
    const auto at = [&](std::size_t i) { return word(i) == "?" ? pGiven : t.At(word(i)); };
    const auto mark = [&](std::size_t i) { return static_cast<CSyncMark*>(at(i)); };
    const auto stream = [&](std::size_t i) {
        return word(i) == "?" ? pTarget : t.plexa.pStream(word(i).c_str());
    };
    const auto way = [&](std::size_t i) {
        return word(i) == "7" ? ScanDirectionType{7} : word(i) == "right" ? sdRight : sdLeft;
    };
    // New objects; those that were not placed go at the end.
    std::vector<std::unique_ptr<CStreamObj, void (*)(CStreamObj*)>> made;
    const auto make = [&](char c) {
        CStreamObj* pMark = c == '|' ? t.plexa.CreateSyncMark(t["p"]) : nullptr;
        CStreamObj* p = pMark ? pMark : t["p"]->CreateToken(std::string(1, c).c_str());
        return made.emplace_back(p, &CStream::DiscardStreamObj).get();
    };
    const auto object = [&](std::size_t i) {
        return word(i).size() == 1 && word(i) != "?" ? make(word(i)[0]) : at(i);
    };
    const auto is = [](bool b) { return std::string(b ? "1" : "0"); };
    const auto text = [&] {
        const std::size_t split = call.find(' ', call.find(' ', call.find(' ') + 1) + 1);
        return split != std::string::npos ? call.substr(split + 1) : "";
    };
    const std::string op = word(0);
    CPlexa& c = t.plexa;
    if (op == "Search") return is(c.CSMSearch(mark(1), mark(2), way(3)));
    if (op == "Before") return is(c.Context(mark(1), mark(2), way(3)));
    if (op == "Sub") return Where(c.SubContext(stream(1), mark(2), way(3)));
    if (op == "Context") return Where(c.Context(stream(1), mark(2), way(3)));
    if (op == "Move") return Where(c.Move(stream(1), mark(2), way(3)));
    if (op == "Adjacent") return is(c.Adjacent(mark(1), mark(2)));
    if (op == "Bracket") {
        CSyncMark *pLeft = t.First("p"), *pRight = pLeft;
        const bool b = c.BracketToken(mark(1), way(2), &pLeft, &pRight, stream(3), stream(4));
        return is(b) + " " + Where(pLeft) + " " + Where(pRight);
    }
    if (op == "Project") return Where(c.ProjectSyncMark(pTarget, mark(1), mark(2)));
    if (op == "String") return is(c.InsertString(pTarget, text().c_str(), mark(1), mark(2)));
    if (op == "Literal") {
        return is(c.InsertLiteralString(pTarget, text().c_str(), mark(1), mark(2)));
    }
    if (op == "Insert") return is(c.InsertStreamObject(pTarget, mark(1), mark(2), object(3)));
    if (op.substr(0, 2) == "At") {
        const InsertionLocationType where{op[2] - '0'};
        return is(c.InsertStreamObject(pTarget, mark(1), mark(2), object(3), where));
    }
    if (op == "List") {
        std::vector<CStreamObj*> list;
        for (const char item : text()) list.push_back(item == '?' ? pGiven : make(item));
        const int n = static_cast<int>(list.size());
        return is(c.InsertStreamObjects(pTarget, mark(1), mark(2), list.data(), n));
    }
    if (op == "Items") {
        const BufferSyncMarkInsertionType type{std::stoi(word(3))};
        return is(c.DeleteStreamItems(pTarget, mark(1), mark(2), type));
    }
    if (op == "Mark") return is(c.DeleteStreamSyncMark(pTarget, mark(1)));
    auto* pPattern = static_cast<CToken*>(op == "Strip" ? object(3) : nullptr);
    return is(c.StripOutTokens(pTarget, mark(1), mark(2), pPattern));
}

/// Rows of a table are of the form "what is given -> what is then"; this gives both.
using Rows = std::vector<std::string>;
inline std::pair<std::string, std::string> Parts(const std::string& row) {
    const std::size_t at = row.find(" -> ");
    return {row.substr(0, at), row.substr(at + 4)};
}

/// For each row, behind `given`, a container of the given tiers. Given are what p holds, the ties,
/// and a call: "||o|| a.0=p.0: Insert a.0 null | -> 1 |||o|| a.0=p.0" tells its result and, unless
/// nothing has changed, p and the ties behind it.
inline void ExpectAfter(std::initializer_list<Tier> tiers, const std::string& given,
                        const Rows& rows, Checks checks = {}) {
    for (const std::string& row : rows) {
        const auto [all, after] = Parts(given + row);
        const std::size_t filled = all.find_first_of(": ");
        const std::size_t colon = all.find(": ");
        Tiers t(tiers);
        Fill(t["p"], all.substr(0, filled));
        t.TieAll(all.substr(filled, colon - filled));
        t.plexa.RankPopulatedStreams();
        const std::string before = Dump(t.plexa);
        std::string result = Caller(t)(all.substr(colon + 2));
        if (Dump(t.plexa) != before) result += " " + t.Picture("p") + " " + Ties(t.plexa);
        EXPECT_EQ(result.substr(0, result.find_last_not_of(' ') + 1), after) << all;
        EXPECT_EQ(CheckStructure(t.plexa, checks), "") << all;
    }
}

}  // namespace mlds_test

#endif
