// The string notation, and texts without notation.
#include "container/calls.h"

using namespace mlds_test;

namespace {

const std::string kLongMark(52, 'm'), kLongToken(52, 't');

// A container with all kinds of streams, and variables: x and y are marks, v is bound to a token of
// its own, w to the first token of phone, n to none.
struct Sheet : Tiers {
    explicit Sheet(const char* picture = "||t|e||")
        : Tiers{{"inp", "||a|b||"}, {"phone", "||", {"a", "e", "i", "t"}}, {"num"}, {"real"}} {
        CStream* pPhone = (*this)["phone"];
        pPhone->AddField("stress")->SetFieldType(fvInt);
        CField* pVowel = pPhone->AddField("vowel");
        int yes[] = {0, 2}, no[] = {3, 3};
        pVowel->CreateFieldValueSet("yes")->SetIncludeRanges(yes, 1);
        pVowel->CreateFieldValueSet("no")->SetIncludeRanges(no, 1);
        pPhone->AddField("no")->SetFieldType(fvInt);  // named like a set
        (*this)["num"]->GetField(0)->SetFieldType(fvInt);
        (*this)["real"]->GetField(0)->SetFieldType(fvFloat);
        plexa.AddStream("fieldless");
        Fill(pPhone, picture);
        Fill((*this)["num"], "||7||");
        own = CToken(pPhone, "i");
        own.SetFieldValue("stress", 4);
        w = First("phone")->GetNextToken();
        for (const char* name : {"v", kLongToken.c_str(), kLongToken.c_str() + 1})
            list.AddTokenPtr(name, &v);
        for (const char* name : {"x", kLongMark.c_str(), kLongMark.c_str() + 1})
            list.AddSyncMarkPtr(name, &x);
        list.AddSyncMarkPtrPtr("y", &y);
        list.AddTokenPtr("w", &w);
        list.AddTokenPtr("n", &n);
    }
    // Inserts between the outermost marks of a stream, and tells the result and the state.
    std::string Insert(const std::string& text, const char* stream = "phone") {
        CStreamObj* pLeft = First(stream)->GetNextStreamObj();
        CSyncMark* pRight = Last(stream)->GetPrevSyncMark();
        const bool b = plexa.InsertString(text.c_str(), static_cast<CSyncMark*>(pLeft), pRight);
        return (b ? "1 " : "0 ") + State(stream);
    }
    // Values stand behind the names of tokens; '?' for a name that is no value.
    std::string State(const char* stream = "phone") {
        std::string text;
        for (CStreamObj* p : Chain((*this)[stream])) {
            auto* pToken = p->GetObjectType(otToken) ? static_cast<CToken*>(p) : nullptr;
            const char* name = pToken != nullptr ? pToken->GetNameField() : "|";
            text += name != nullptr ? name : "?";
            for (int i = 1; pToken != nullptr && i < p->GetStream()->GetNumFields(); ++i) {
                text += std::to_string(pToken->GetFieldValueIndex(i));
            }
        }
        return text + (x ? " x " + Where(x) : "") + (y ? " y " + Where(y) : "");
    }

    CToken own{static_cast<CStream*>(nullptr)};
    CSyncMark *x = nullptr, *y = nullptr;
    CToken *v = &own, *w = nullptr, *n = nullptr;
    CVarList list{&plexa};
};

// Behind a name: stress, vowel, "no".
TEST(Notation, Items) {
    for (const std::string row :
         {"ta] -> t010|a000", "t a] e -> t010|a000", "< a stress:2> no] -> a200|?000|?000",
          "< 'ai' no>] -> ?010", "t !^x a] -> t010|a000|| x phone.1", "!^x t] -> t010|| x phone.0",
          "t a !^x] -> t010|a000|| x phone.2", "] -> ",
          // ends and separators
          " -> ", "t>a -> t010|a000", ">> t > >a   -> t010|a000", "t}a -> t010", "t] 'x -> t010",
          "\tt -> ?000|t010",
          // quoted
          "'a'e -> a000|e000", "''t -> ?000|t010", "'''a' -> ?000|a000", "'a b>]'t -> ?000|t010",
          // field lists
          "<a> -> a000", "<name:t>e -> t010|e000", "<  name:'t'  > -> t010", "<name: t> -> ?000",
          "<''>t -> ?000|t010", "<a stress:2:3 > -> a200", "<a name:t stress:1> -> t110",
          "<t yes> -> t000", "<a no stress:3 yes>t -> a300|t010", "<a no:7> -> a001",
          "<a yes:7 nosuch nosuch:1 vowel:no> -> a000",
          // copies, also of a token that goes
          "$v]a -> i400", "$v>t -> i400|t010", "<$v> -> i400", "<  $v no>t -> i400|?000|?000|t010",
          "a $w $w -> a000|t010|t010",
          // bindings
          "!a -> ?000|a000", "!^x 't' -> t010|| x phone.0", "!^x <t> -> t010|| x phone.0",
          "!^x $v -> i400|| x phone.0", "!^x !^y t -> t010|| y phone.0", "!^x !^nosuch t -> t010",
          "!^x t!^y a -> t010|a000|| x phone.0 y phone.1", "!^x>t -> ", "!^x] -> || x phone.1"}) {
        const auto [text, after] = Parts(row);
        Sheet s;
        const bool bBound = after.find("||") != std::string::npos;
        EXPECT_EQ(s.Insert("[" + text), "1 ||" + after + (bBound ? "" : "||")) << text;
        EXPECT_EQ(CheckStructure(s.plexa), "") << text;
    }
}

TEST(Notation, Prefixes) {
    for (const std::string row :
         {"inp {xy -> 1 ||x|y||", "inp   { xy]z -> 1 ||x|y||", "inp [%inp xy}z -> 1 ||x|y||",
          "inp %inp]xy -> 1 ||||", "num %num 12 3 -> 1 ||12|3||", "phone [e -> 1 ||e000||",
          "phone { %phone e] -> 1 ||e000||",
          // unknown streams, and none
          "num %nosuch 1 -> 1 ||7||", "num % num 1 -> 1 ||7||", "num [%nosuch 1 -> 1 ||7||",
          "num  -> 0 ||7||", "num    -> 0 ||7||", "num 1 -> 0 ||7||", "num ] -> 0 ||7||"}) {
        const std::string given = Parts(row).first;
        const std::size_t at = given.find(' ');
        EXPECT_EQ(Sheet().Insert(given.substr(at + 1), given.substr(0, at).c_str()),
                  Parts(row).second)
            << row;
    }
}

TEST(Notation, Bounds) {
    ExpectAfter(
        {{"a", "||a|b||"}, {"p"}}, "",
        {// one mark twice: left of it, behind a new mark; one mark only: next to it
         "||||: String p.1 p.1 ta -> 1 |||t|a||", "||t|a||: String p.1 p.1 e -> 1 ||t|e|a||",
         "||||: String p.0 null ta -> 1 ||t|a||", "||t||: String p.0 null e -> 1 ||e|t||",
         "||||: String null p.1 ta -> 1 ||t|a||", "||t||: String null p.1 e -> 1 ||t|e||",
         "||t||: String p.end null e -> 0", "||t||: String null null ] -> 1",
         // in the wrong order: what lay right of the left one is gone
         "||t|a|e||: String p.1 p.0 i -> 0 ||t||", "||t|a||: String p.2 p.1 i -> 0",
         // carried over
         "||: String a.0 a.2 t a -> 1 ||t|a|| a.0=p.0 a.2=p.2",
         "||t|| a.0=p.0 a.2=p.1: String a.0 a.1 e -> 0",
         "||t|| a.1=p.1: String a.2 a.0 e -> 0 ||t||| a.1=p.1 a.2=p.2",
         // next to a sentinel: a plain token makes the call fail, others are left out
         "||||: String p.start p.0 ta -> 0", "||||: String p.start p.0 't'a -> 1 ||a|||",
         "||||: String p.start p.0 <t>e -> 1 ||e|||"});
    Sheet s("||||");
    CStream* pPhone = s["phone"];
    EXPECT_TRUE(s.plexa.InsertString(pPhone, "$v !^x $v !^y", s.First("phone"), Mark(pPhone, 0)));
    EXPECT_EQ(s.State(), "||i400||| x phone.0 y phone.1");
}

TEST(Notation, LiteralTexts) {
    ExpectAfter(
        {{"a", "||a|b||"}, {"p"}}, "",
        {"||o|l||: Literal p.0 p.2 t <]%' -> 1 ||t| |<|]|%|'||",
         "||o|l||: Literal p.0 p.2 -> 1 ||||", "||o|l||: Literal p.1 p.0 t -> 0 ||o||",
         "||o||: Literal p.1 p.1 -> 1", "||||: Literal p.0 null ta -> 1 ||t|a||",
         "||o||: Literal p.0 null ta -> 1 ||t|a|o||", "||||: Literal null p.1 ta -> 1 ||t|a||",
         "||o||: Literal null p.1 ta -> 1 ||o|t|a||", "||o||: Literal null p.0 ta -> 1",
         "||||: Literal p.1 p.1 ta -> 1 ||t|a||", "||o||: Literal p.1 p.1 ta -> 1 ||o|t|a||",
         "||o||: Literal p.end null t -> 0", "||o||: Literal null null t -> 0",
         "||: Literal a.0 a.1 t -> 1 ||t|| a.0=p.0 a.1=p.1"});
    // Without a field "name" there are no tokens to make, but room is made for them.
    for (const char* text : {"", "t"}) {
        Tiers t{{"p"}};
        CStream* p = t.plexa.pStream(t.plexa.AddStream("nameless"));
        CSyncMark* marks[3];
        for (CSyncMark*& pMark : marks) {
            ASSERT_TRUE(
                p->InsertStreamObj(pMark = t.plexa.CreateSyncMark(p), 3, p->pGetLastStreamObj()));
        }
        EXPECT_EQ(t.plexa.InsertLiteralString(p, text, marks[0], marks[2]), *text == '\0');
        EXPECT_EQ(Picture(p), "||||") << text;
    }
}

// After a switch, another stream makes, counts and places the tokens; marks stay the first's.
TEST(Notation, StreamSwitch) {
    Sheet s;
    EXPECT_EQ(s.Insert("[t%inp a'b'%phone <e>"), "1 ||t010|a|b|e000||");
    EXPECT_EQ(Where(Object(s["phone"], 3)) + Where(Object(s["phone"], 2)), "inp?phone.1");
    EXPECT_EQ(s["phone"]->GetNumTokens() * 10 + s["phone"]->GetNumSyncMarks(), 10 * 2 + 2 + 1);
    EXPECT_EQ(s["inp"]->GetNumTokens() * 10 + s["inp"]->GetNumSyncMarks(), 10 * (2 + 2) + 3 + 2);
    // Where a plain token ends is settled by the stream that the text goes into.
    EXPECT_EQ(s.Insert("[ a %num 12"), "1 ||a000|1|2||");
}

TEST(Notation, MalformedTextsChangeNothing) {
    // The stream and its texts, each behind a '~'.
    for (const std::string group :
         {"phone~'a~'~a 'b~!^x t 'b~'''~<a]~<~<  ~<a~<a stress:2~<a stress:~<'a~<'a'~<name:",
          "phone~<name:'a~<''~<a }~%nosuch t~t %nosuch~t%~% inp t~%inp% t~t $nosuch~$~$n~$x~$ v",
          "phone~<$nosuch>~<$~<  $n>~<a> $w!~!^v~t !^v a~!^n~t<a>'b' $v <a",
          "num~a~1 a~-1~1.2~12a~1\t2~1 %phone a~!1~'1", "real~1~a~'1' 1",
          "fieldless~a~'a'~<a>~%phone a"}) {
        std::istringstream parts(group);
        std::string stream;
        std::getline(parts, stream, '~');
        for (std::string text; std::getline(parts, text, '~');) {
            Sheet s;
            const char* bounds = s[stream]->GetNumTokens() > 0 ? stream.c_str() : "inp";
            CSyncMark* pRight = s.Last(bounds)->GetPrevSyncMark();
            const std::string before = Dump(s.plexa);
            EXPECT_FALSE(s.plexa.InsertString(s[stream], text.c_str(), s.Mark(bounds, 0), pRight))
                << text;
            EXPECT_EQ(Dump(s.plexa) + s.State(), before + "||t010|e000||") << text;
        }
    }
}

TEST(Notation, PartsHaveLimits) {
    const std::tuple<const char*, std::size_t, char, const char*> parts[] = {
        {"%num ", 19, '1', " 2"},   {"['", 19, 'a', "'"},       {"[<", 19, 'a', ">"},
        {"[<name:", 19, 'a', " >"}, {"[<'", 19, 'a', "'>"},     {"[<a ", 19, 'w', ">"},
        {"[<a ", 19, 'w', ":1>"},   {"[<a no:", 31, '1', " >"}, {"[t $", 51, 't', ""},
        {"[<$", 51, 't', ">"},      {"[!^", 51, 'm', " t"},     {"%", 51, 's', " t"}};
    for (const auto& [begin, longest, c, end] : parts) {
        Sheet s;
        const std::string before = Dump(s.plexa);
        const char* stream = *begin == '%' ? "num" : "phone";
        EXPECT_EQ(s.Insert(begin + std::string(longest + 1, c) + end, stream)[0], '0') << begin;
        EXPECT_EQ(Dump(s.plexa), before) << begin;
        EXPECT_EQ(s.Insert(begin + std::string(longest, c) + end, stream)[0], '1') << begin;
    }
}

TEST(Notation, TokensNeedBoundsAndCopiesAVariableList) {
    Sheet s;
    for (const char* text : {"t", "'t'", "<t>", "$v", "!^x $v"}) {
        EXPECT_FALSE(s.plexa.InsertString(s["phone"], text, nullptr, nullptr)) << text;
    }
    s.plexa.PopVarListStack();
    EXPECT_EQ(s.Insert("[a $v"), "0 ||t010|e000||");
    EXPECT_EQ(s.Insert("[!^x a"), "1 ||a000||");
}

}  // namespace
