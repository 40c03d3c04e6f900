// Random tests, valid and broken ones, from bytes to text and back.
#include <gtest/gtest.h>

#include <random>

#include "mlds/testasm/file.h"
#include "mlds/testasm/testasm.h"
#include "mlds/testasm/text.h"
#include "mlds/testasm/validate.h"
#include "names.h"
#include "ruletest/opcodes.h"

namespace {

using namespace mlds_testasm;
using mlds::OperandKind;
using mlds_testasm_test::Names;

class Maker {
public:
    int Below(int n) { return static_cast<int>(m_random() % static_cast<unsigned>(n)); }
    std::size_t Index(std::size_t size) { return m_random() % size; }
    unsigned char Byte() { return static_cast<unsigned char>(m_random() % 256); }

    // Tests whose operands are of their kinds; wild ones have any links and numbers, and here and
    // there any byte.
    Image Make(bool bWild) {
        Program program;
        for (int n = 1 + Below(3); n > 0; --n) program.tests.push_back(MakeTest(n, bWild));
        Diagnostics diagnostics("made");
        Image image = Lower(program, diagnostics);
        for (std::size_t t = 0; bWild && t < image.tests.size(); ++t) {
            const int first = image.tests[t].base + 1;
            for (int n = 0; n < 3; ++n) {
                const int size = program.tests[t].size() - 1;
                image.code[static_cast<std::size_t>(first + Below(size))][Index(5)] = Byte();
            }
        }
        return image;
    }

private:
    Test MakeTest(int number, bool bWild) {
        Test test;
        test.name = "t" + std::to_string(number);
        for (const char* always : {"Ptr", "AngleBrkt", "Stream", "ParentPtr"}) {
            Add(test, FindMnemonic(always));
        }
        for (int n = Below(bWild ? 40 : 6); n > 0; --n) {
            Add(test, &mlds::kOpcodeTable[Index(std::size(mlds::kOpcodeTable))]);
        }
        for (Node& node : test.nodes) {
            for (std::size_t i = 0; i < 4; ++i) {
                const OperandKind kind = node.pInfo->operands[i];
                const bool bToken =
                    kind == OperandKind::tokenByte || kind == OperandKind::tokenShort;
                if (IsLink(kind)) {
                    node.operands[i] = bWild ? Below(test.size()) : Link(test, kind);
                } else {
                    node.operands[i] = bWild ? Below(300) - 9 : bToken ? 2 : Below(2);
                }
            }
        }
        return test;
    }

    static void Add(Test& test, const mlds::OpcodeInfo* pInfo) {
        Node node;
        node.pInfo = pInfo;
        test.Add(node);
    }

    NodeId Link(const Test& test, OperandKind kind) {
        const bool bConstant = kind == OperandKind::stream || kind == OperandKind::varLink;
        for (;;) {
            const NodeId id = 1 + Below(test.size() - 1);
            const Node& node = test.At(id);
            if (kind == OperandKind::limit && id != 4) continue;
            if (bConstant && !IsConstant(node)) continue;
            const bool bValue = kind == OperandKind::value || kind == OperandKind::maybeStream;
            if (bConstant || bValue == node.pInfo->bValue) return id;
        }
    }

    std::mt19937 m_random{1};
};

TEST(TestAssembler, WhatIsTakenApartGoesTogetherAgain) {
    Maker maker;
    int nValid = 0;
    for (int i = 0; i < 400; ++i) {
        const Image image = maker.Make(i % 2 == 0);
        Schema schema = Names();
        Diagnostics diagnostics("t");
        const Program program = Lift(image, diagnostics);
        ASSERT_EQ(Lower(program, diagnostics), image);
        const std::string text = WriteProgram(program, schema);
        const Program again = ReadProgram(text, schema, diagnostics);
        ASSERT_EQ(Lower(again, diagnostics), image) << text;
        ASSERT_EQ(diagnostics.errors(), 0) << text << diagnostics.Text();
        ASSERT_EQ(WriteProgram(again, schema), text);
        Validate(again, schema, diagnostics);
        nValid += diagnostics.errors() == 0;
        std::string broken = text;
        for (int n = 0; n < 3; ++n)
            broken[maker.Index(text.size())] = " \n:.%^$'7x"[maker.Below(10)];
        const Assembly assembly = Assembler(Names()).Assemble(broken, "t");
        ASSERT_EQ(assembly.ok(), assembly.size() > 0);

        Image read;
        std::string expected;
        std::string file = WriteImage(image);
        ASSERT_TRUE(ReadImage(file, &read, &expected) && read == image) << expected;
        file.resize(maker.Index(file.size()));
        ASSERT_FALSE(ReadImage(file, &read, &expected));
    }
    EXPECT_GT(nValid, 20);
}

TEST(TestAssembler, AnyBytesAreLookedAtAndReported) {
    Maker maker;
    for (int i = 0; i < 200; ++i) {
        Image image;
        image.code.resize(static_cast<std::size_t>(maker.Below(600)));
        for (Bytes& bytes : image.code) {
            for (unsigned char& byte : bytes) byte = i % 2 == 0 ? maker.Byte() : maker.Byte() & 63;
        }
        for (int n = 0; n < 3; ++n) image.tests.push_back({"t", maker.Below(700) - 50, {}});
        Diagnostics diagnostics("t");
        const Program program = Lift(image, diagnostics);
        Validate(program, Names(), diagnostics);
        EXPECT_GT(diagnostics.errors(), 0);
        Schema schema = Names();
        EXPECT_EQ(ReadProgram(WriteProgram(program, schema), schema, diagnostics).tests.size(),
                  program.tests.size());
    }
    Diagnostics diagnostics("t");
    const Image image = {{{0, 9, 0, 0, 1}, {54, 0, 0, 0, 0}, {4, 1, 0, 0, 0}, {6, 0, 4, 0, 0}},
                         {{"t", 0, {}}}};
    Lift(image, diagnostics);
    EXPECT_EQ(diagnostics.Text(),
              "t: instruction 0: error: expected a link below 4 in byte 1 of test, found 9\n"
              "t: instruction 1: warning: expected an opcode of the table, found 54\n"
              "t: instruction 2: warning: expected 0 in byte 1 of Or, found 1\n"
              "t: instruction 3: warning: expected a link below 4 in byte 2 of Not, found 4\n");
}

}  // namespace
