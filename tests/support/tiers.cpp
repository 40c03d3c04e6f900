// Containers as text: building and finding.
#include "support/tiers.h"

#include <sstream>
#include <stdexcept>

namespace mlds_test {

namespace {

// The objects of a picture between its sentinels: "|" for a mark, else the name of a token.
std::vector<std::string> Items(const std::string& picture, bool bCharacters) {
    std::vector<std::string> items;
    bool bInName = false;
    for (std::size_t i = 1; i + 1 < picture.size(); ++i) {
        const bool bMark = picture[i] == '|';
        if (bMark || !bInName || bCharacters) items.emplace_back();
        items.back() += picture[i];
        bInName = !bMark;
    }
    return items;
}

CStreamObj* Nth(CStream* pStream, int k, bool bTokens, bool bMarks) {
    const std::vector<CStreamObj*> chain = Chain(pStream);
    for (std::size_t i = 1; i + 1 < chain.size(); ++i) {
        if ((chain[i]->GetObjectType(otToken) ? bTokens : bMarks) && k-- == 0) return chain[i];
    }
    throw std::out_of_range("too few objects in " + Picture(pStream));
}

CStreamObj* Make(CStream* pStream, const std::string& item) {
    if (item == "|") return pStream->pGetStreamPlexa()->CreateSyncMark(pStream);
    return pStream->CreateToken(item.c_str());
}

}  // namespace

std::vector<CStreamObj*> Chain(CStream* pStream) {
    std::vector<CStreamObj*> chain{pStream->pGetFirstStreamObj()};
    while (CStreamObj* pNext = chain.back()->GetNextStreamObj()) {
        const bool bLeadsBack = pNext->GetPrevStreamObj() == chain.back();
        chain.push_back(pNext);
        if (!bLeadsBack) break;
    }
    return chain;
}

void Fill(CStream* pStream, const std::string& picture) {
    pStream->StreamReset();
    std::vector<std::string> items = Items(picture, pStream->GetField(0)->GetFieldType() == fvChar);
    CStreamObj* pRight = pStream->pGetLastStreamObj();
    if (!items.empty()) {
        // The closing mark goes in first, as no token may touch the end sentinel.
        CStreamObj* pClosing = Make(pStream, items.back());
        items.pop_back();
        if (!pStream->InsertStreamObj(pClosing, 3, pRight)) CStream::DiscardStreamObj(pClosing);
        pRight = pRight->GetPrevStreamObj();
    }
    for (const std::string& item : items) {
        CStreamObj* p = Make(pStream, item);
        if (!pStream->InsertStreamObj(p, 3, pRight)) CStream::DiscardStreamObj(p);
    }
    if (Picture(pStream) != picture) {
        throw std::invalid_argument("built " + Picture(pStream) + " instead of " + picture);
    }
}

std::string Picture(CStream* pStream) {
    return pStream->GetStr(nullptr, nullptr, true);
}

CSyncMark* Mark(CStream* pStream, int k) {
    return static_cast<CSyncMark*>(Nth(pStream, k, false, true));
}

CToken* Token(CStream* pStream, int k) {
    return static_cast<CToken*>(Nth(pStream, k, true, false));
}

CStreamObj* Object(CStream* pStream, int k) {
    return Nth(pStream, k, true, true);
}

Tiers::Tiers(std::initializer_list<Tier> tiers) : plexa(nullptr) {
    for (const Tier& tier : tiers) {
        CField* pField = plexa.pStream(plexa.AddStream(tier.name))->AddField("name");
        pField->SetFieldType(tier.values.empty() ? fvChar : fvEnum);
        if (tier.values.empty()) continue;
        pField->SetPossibleValues(tier.values.data(), static_cast<int>(tier.values.size()));
    }
    plexa.Initialize();
    for (const Tier& tier : tiers) Fill((*this)[tier.name], tier.picture);
}

CStream* Tiers::operator[](const std::string& stream) {
    if (CStream* pStream = plexa.pStream(stream.c_str())) return pStream;
    throw std::out_of_range("no stream " + stream);
}

CStreamObj* Tiers::At(const std::string& place) {
    if (place == "null") return nullptr;
    const std::size_t at = place.find_first_of(".[");
    CStream* pStream = (*this)[place.substr(0, at)];
    const std::string which = place.substr(at + 1);
    if (which == "start") return pStream->pGetFirstStreamObj();
    if (which == "end") return pStream->pGetLastStreamObj();
    return Nth(pStream, std::stoi(which), place[at] == '[', place[at] == '.');
}

void Tiers::TieAll(const std::string& ties) {
    std::istringstream groups(ties);
    for (std::string group; groups >> group;) {
        std::istringstream places(group);
        std::string first;
        std::getline(places, first, '=');
        for (std::string other; std::getline(places, other, '=');) {
            if (MarkAt(first)->SetToSynchronous(MarkAt(other))) continue;
            throw std::logic_error("cannot tie " + first + " to " + other);
        }
    }
}

}  // namespace mlds_test
