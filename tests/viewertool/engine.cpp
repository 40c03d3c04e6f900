// engine STREAMS TOKENS: a host for tests of the viewer. It fills streams, does what its standard
// input says, a command a line, and answers each with a line.
//
//   start, stop             begin and end the link to the viewer
//   insert STREAM NAMES     add tokens at the end of a stream, in the notation
//   poll                    carry out what the viewer asks for
//   value STREAM FIELD      what the first token of a stream holds
//   set STREAM FIELD VALUE  set that without being asked to
//   say CHARACTER COUNT     send a text of so many characters
#include <unistd.h>

#include <iostream>
#include <sstream>

#include "mlds/mlds.h"

namespace {

// Names are anything: this one is also markup.
constexpr const char* kMarkup = "<img src=x>";

class Engine {
public:
    Engine(int nStreams, int nTokens) {
        for (int i = 0; i < nStreams; ++i) Add("tier" + std::to_string(i));
        m_plexa.Initialize();
        for (int i = 0; i < nStreams; ++i) Fill(i, nTokens);
        m_list.AddSyncMarkPtr("here", &m_pHere);
    }

    std::string Do(const std::string& line) {
        std::istringstream in(line);
        std::string command, stream, rest;
        in >> command >> stream >> std::ws;
        std::getline(in, rest);
        CStream* pStream = m_plexa.pStream(stream.c_str());
        if (command == "start") return m_plexa.StartMessageEngine() ? "ok" : "no";
        if (command == "stop") m_plexa.StopMessageEngine();
        if (command == "poll") Poll();
        if (command == "insert") {
            return m_plexa.InsertString(pStream, rest.c_str(), nullptr, LastMark(pStream)) ? "ok"
                                                                                           : "no";
        }
        if (command == "value") return FirstToken(pStream)->GetFieldValueString(rest.c_str());
        if (command == "set") {
            const std::size_t space = rest.find(' ');
            FirstToken(pStream)->SetFieldValue(rest.substr(0, space).c_str(),
                                               rest.substr(space + 1).c_str());
        }
        if (command == "say") {
            m_plexa.sendMessage(std::string(std::stoul(rest), stream.at(0)).c_str());
        }
        return "ok";
    }

private:
    // What the viewer has been told to ask for may still be on its way.
    void Poll() {
        for (int i = 0; i < 20; ++i) {
            m_plexa.ProcessRecvMsg();
            ::usleep(2000);
        }
    }

    static CToken* FirstToken(CStream* pStream) {
        return pStream->pGetFirstStreamObj()->GetNextToken();
    }

    static CSyncMark* LastMark(CStream* pStream) {
        return pStream->pGetLastStreamObj()->GetPrevSyncMark();
    }

    void Add(const std::string& name) {
        CStream* pStream = m_plexa.pStream(m_plexa.AddStream(name.c_str()));
        const std::string longest(5000, 'y');
        const char* names[] = {"a",     "ei",     "o",      "st",           "kwa",
                               kMarkup, "\u05D0", "\u05D1", longest.c_str()};
        CField* pName = pStream->AddField("name");
        pName->SetFieldType(fvEnum);
        pName->SetPossibleValues(names, 9);
        const char* tones[] = {"high", "low"};
        CField* pTone = pStream->AddField("tone");
        pTone->SetFieldType(fvEnum);
        pTone->SetPossibleValues(tones, 2);
        pStream->AddField("stress")->SetFieldType(fvInt);
    }

    // Stream i has a token for every i + 1 of the first one, tied where both begin.
    void Fill(int i, int nTokens) {
        CStream* pStream = m_plexa.pStream(i);
        CSyncMark* pLeft = pStream->pGetFirstStreamObj();
        CSyncMark* pTied = m_plexa.pStream(0)->pGetFirstStreamObj();
        for (int k = 0; k <= nTokens / (i + 1); ++k) {
            CSyncMark* pMark = m_plexa.CreateSyncMark(pStream);
            pStream->InsertStreamObj(pMark,
                                     pStream->pGetLastStreamObj()->GetAdjacentStreamObj(sdLeft),
                                     pStream->pGetLastStreamObj());
            for (int skipped = 0; i > 0 && skipped < (k == 0 ? 1 : i + 1); ++skipped) {
                pTied = pTied->GetNextSyncMark();
            }
            if (i > 0) pTied->SetToSynchronous(pMark);
            if (k > 0) {
                CToken* pToken = pStream->CreateToken(k % 3 == 0 ? "kwa" : k % 2 == 0 ? "ei" : "a");
                pStream->InsertStreamObj(pToken, pLeft, pMark);
            }
            pLeft = pMark;
        }
        if (i == 0) m_pHere = pStream->pGetFirstStreamObj()->GetNextSyncMark();
    }

    CPlexa m_plexa{nullptr};
    CSyncMark* m_pHere = nullptr;
    CVarList m_list{&m_plexa};
};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    Engine engine(std::stoi(argv[1]), std::stoi(argv[2]));
    for (std::string line; std::getline(std::cin, line);) {
        std::cout << engine.Do(line) << std::endl;
    }
}
