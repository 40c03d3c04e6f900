// Text, letters, words and the lexicon.
#include "host/fill.h"

#include "host/carrier.h"

namespace mlds::rules {

namespace {

// Builds a stream from left to right. A token never touches a sentinel, so the mark behind it comes
// before the token itself.
class Appender {
public:
    explicit Appender(CStream* pStream)
        : m_pStream(pStream), m_pLast(pStream->pGetFirstStreamObj()) {}

    /// A mark behind all that is there: that of the last token, or a new one. Null when memory runs
    /// out.
    CSyncMark* Mark() {
        if (m_bBehindToken) {
            m_bBehindToken = false;
            return m_pLast;
        }
        CSyncMark* pMark = m_pStream->pGetStreamPlexa()->CreateSyncMark(m_pStream);
        if (!Insert(pMark, m_pLast)) return nullptr;
        m_pLast = pMark;
        return pMark;
    }
    /// A token behind the last mark. False when memory runs out.
    bool Add(CToken* pToken) {
        if (pToken == nullptr) return false;
        CSyncMark* pBefore = m_pLast;
        m_bBehindToken = false;
        if (Mark() == nullptr) {
            CStream::DiscardStreamObj(pToken);
            return false;
        }
        m_bBehindToken = true;
        return Insert(pToken, pBefore);
    }
    bool AddNumber(int name) {
        CToken* pToken = m_pStream->CreateToken();
        if (pToken != nullptr) pToken->SetFieldValue(kNameField, name);
        return Add(pToken);
    }
    bool AddNamed(const char* name) { return Add(m_pStream->CreateToken(name)); }

private:
    bool Insert(CStreamObj* p, CSyncMark* pBehind) {
        if (p == nullptr) return false;
        if (m_pStream->InsertStreamObj(p, iwRightOf, pBehind)) return true;
        CStream::DiscardStreamObj(p);
        return false;
    }

    CStream* m_pStream;
    CSyncMark* m_pLast;
    bool m_bBehindToken = false;  // the last mark was made for the token in front of it
};

class TextFiller {
public:
    TextFiller(CPlexa& plexa, const Model& model, const ReadText& text)
        : m_model(model),
          m_text(text),
          m_characters(plexa.pStream(kTextTier)),
          m_letters(plexa.pStream(std::max(model.text.tier, 0))) {}

    // A token touches no sentinel, so both streams begin and end with a mark.
    bool Fill() {
        const bool bLetters = m_model.text.tier != kNoTier;
        if (!Tie(m_characters.Mark(), bLetters)) return false;
        for (const ReadText::Segment& segment : m_text.segments) {
            CSyncMark* pEnd = AddCharacters(segment);
            if (pEnd == nullptr) return false;
            if (bLetters && !AddLetters(segment)) return false;
            if (!Tie(pEnd, bLetters)) return false;
        }
        return true;
    }

private:
    CSyncMark* AddCharacters(const ReadText::Segment& segment) {
        CSyncMark* pEnd = nullptr;
        for (int i = segment.begin; i < segment.end; ++i) {
            const int code = m_text.characters[static_cast<std::size_t>(i)].code;
            if (!m_characters.AddNumber(code)) return nullptr;
            pEnd = m_characters.Mark();
            if (pEnd == nullptr) return nullptr;
        }
        return pEnd;
    }

    // Between letters stands a mark, at an empty place one more. The closing one comes with the
    // tie.
    bool AddLetters(const ReadText::Segment& segment) {
        const std::vector<std::string>& names =
            m_model.tiers[static_cast<std::size_t>(m_model.text.tier)].tokens;
        bool bFirst = true;
        for (const int letter : segment.letters) {
            if (!bFirst && m_letters.Mark() == nullptr) return false;
            bFirst = false;
            if (letter == ReadText::kPlace) continue;
            const char* name = names[static_cast<std::size_t>(letter)].c_str();
            if (!m_letters.AddNamed(name)) return false;
        }
        return true;
    }

    bool Tie(CSyncMark* pMark, bool bLetters) {
        if (pMark == nullptr) return false;
        if (!bLetters) return true;
        CSyncMark* pLetter = m_letters.Mark();
        return pLetter != nullptr && pMark->SetToSynchronous(pLetter);
    }

    const Model& m_model;
    const ReadText& m_text;
    Appender m_characters;
    Appender m_letters;
};

// The letters between two marks, as a lexicon and the words of a tier have them.
TokenKey KeyBetween(CSyncMark* pLeft, CSyncMark* pRight) {
    TokenKey key;
    for (CStreamObj* p = pLeft; p != pRight; p = p->GetNextStreamObj()) {
        if (!p->GetObjectType(otToken)) continue;
        auto* pToken = static_cast<CToken*>(p);
        key.push_back(static_cast<char16_t>(pToken->GetFieldValueIndex(kNameField)));
    }
    return key;
}

// The token of a run: its pattern's, or that of the words among which it is listed.
int NameOfRun(const Tier& tier, int token, const TokenKey& key) {
    for (const SpanWords& words : tier.spanWords) {
        for (const TokenKey& word : words.words) {
            if (word == key) return words.token;
        }
    }
    return token;
}

}  // namespace

bool FillText(CPlexa& plexa, const Model& model, const ReadText& text) {
    const bool bFilled = TextFiller(plexa, model, text).Fill();
    plexa.RankPopulatedStreams();
    return bFilled;
}

bool InsertPieces(CPlexa& plexa, TierId tier, std::span<const Piece> pieces, CSyncMark* pLeft,
                  CSyncMark* pRight) {
    CStream* pStream = plexa.pStream(tier);
    bool bFirst = true;
    for (const Piece& piece : pieces) {
        if (!bFirst) {
            pLeft = plexa.CreateSyncMark(pStream);
            if (pLeft == nullptr) return false;
            pStream->InsertStreamObj(pLeft, iwLeftOf, pRight);
        }
        bFirst = false;
        CToken* pToken = pStream->CreateToken(piece.name.c_str());
        if (pToken == nullptr) return false;
        for (const Setting& setting : piece.settings) {
            pToken->SetFieldValue(setting.field, setting.value);
        }
        pStream->InsertStreamObj(pToken, iwRightOf, pLeft);
    }
    return true;
}

bool FillSpans(CPlexa& plexa, const CompiledRules& rules, RuleTests& tests, TierId id) {
    const Tier& tier = rules.model.tiers[static_cast<std::size_t>(id)];
    CStream* pSpanned = plexa.pStream(tier.spanned);
    CStream* pStream = plexa.pStream(id);
    Carrier carrier(plexa, pSpanned, pStream);
    CSyncMark* pAt = pSpanned->pGetFirstStreamObj();
    while (pAt != nullptr) {
        if (TokenRightOf(pAt) == nullptr) {
            pAt = MarkRightOf(pAt);
            continue;
        }
        CSyncMark* pEnd = nullptr;
        int token = -1;
        for (std::size_t i = 0; i < tier.spanPatterns.size(); ++i) {
            if (!tests.SpanHolds(id, i, pAt)) continue;
            if (pEnd != nullptr && !tests.end()->RightOf(pEnd)) continue;
            pEnd = tests.end();
            token = tier.spanPatterns[i].token;
        }
        if (pEnd == nullptr) {
            pAt = pAt->GetNextSyncMark();
            continue;
        }
        token = NameOfRun(tier, token, KeyBetween(pAt, pEnd));
        CSyncMark* pLeft = carrier.Carry(pAt);
        CSyncMark* pRight = carrier.Carry(pEnd);
        if (pLeft == nullptr || pRight == nullptr) return false;
        CToken* pToken = pStream->CreateToken(tier.tokens[static_cast<std::size_t>(token)].c_str());
        if (pToken == nullptr) return false;
        pStream->InsertStreamObj(pToken, iwRightOf, pLeft);
        pAt = pEnd;
    }
    plexa.RankPopulatedStreams();
    return true;
}

bool FillFromLexicon(CPlexa& plexa, const CompiledRules& rules, std::size_t lexicon) {
    const LexiconFile& file = rules.model.lexicons[lexicon];
    CStream* pWords = plexa.pStream(file.from);
    CStream* pLetters = plexa.pStream(rules.model.text.tier);
    CStream* pInto = plexa.pStream(file.to);
    Carrier carrier(plexa, pWords, pInto);
    for (CSyncMark* pAt = pWords->pGetFirstStreamObj(); pAt != nullptr;
         pAt = pAt->GetNextSyncMark()) {
        if (TokenRightOf(pAt) == nullptr) continue;
        CSyncMark* pEnd = pAt->GetNextSyncMark();
        const TokenKey key = KeyBetween(pAt->GetCorrespondingSyncMark(pLetters),
                                        pEnd->GetCorrespondingSyncMark(pLetters));
        const std::span<const Piece>* pPieces = rules.lexicons[lexicon].Find(key);
        if (pPieces == nullptr || !carrier.IsOpen(pAt, pEnd)) continue;
        CSyncMark* pLeft = carrier.Carry(pAt);
        CSyncMark* pRight = carrier.Carry(pEnd);
        if (pLeft == nullptr || pRight == nullptr) return false;
        if (!InsertPieces(plexa, file.to, *pPieces, pLeft, pRight)) return false;
    }
    plexa.RankPopulatedStreams();
    return true;
}

}  // namespace mlds::rules
