// dictionary_scanner_test.cpp - entries of dictionary texts.

#include "text/dictionary_scanner.h"

#include "support/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

namespace {

using qxv::DictionaryEntry;
using qxv::DictionaryScanner;
using qxv::DictionaryStep;
using support::Text;

/// All steps as one text: <key|value> for an entry, ~ for what is skipped.
Text Steps(qxv::os::TextView text) {
  DictionaryScanner scanner(text);
  DictionaryEntry entry;
  Text steps;
  for (;;) {
    switch (scanner.Next(entry)) {
      case DictionaryStep::Entry:
        steps += QXT("<") + Text(entry.key) + QXT("|") + Text(entry.value) + QXT(">");
        break;
      case DictionaryStep::Skip:
        steps += QXT("~");
        break;
      case DictionaryStep::End:
        return steps;
    }
  }
}

struct Row {
  Text text;
  Text steps;
};

void ExpectSteps(std::initializer_list<Row> rows) {
  for (const Row& row : rows) {
    EXPECT_EQ(support::Printable(Steps(row.text)), support::Printable(row.steps)) << support::Printable(row.text);
  }
}

TEST(DictionaryScanner, AnEntryIsAKeyInBracketsAndTheRestOfTheLine) {
  ExpectSteps({
      {QXT("[Open]=Ouvrir"), QXT("<Open|Ouvrir>")},
      {QXT("[Open]=Ouvrir\r\n"), QXT("<Open|Ouvrir>")},
      {QXT("[Open]=Ouvrir\n"), QXT("<Open|Ouvrir>")},
      {QXT("[Open]=Ouvrir\r\n[Save]=Enregistrer\r\n"), QXT("<Open|Ouvrir><Save|Enregistrer>")},
      {QXT("[Open] = Ouvrir"), QXT("<Open|Ouvrir>")},
      {QXT("text [Open]=Ouvrir"), QXT("<Open|Ouvrir>")},
      {QXT("[a]=b=c"), QXT("<a|b=c>")},
      {QXT("[a]=[b]"), QXT("<a|[b]>")},
      {QXT("[a=b]=c"), QXT("<a=b|c>")},
      {QXT("[a[b]=c"), QXT("<a[b|c>")},
      {QXT("[\u4E2D]=\u56FD"), QXT("<\u4E2D|\u56FD>")},
      {QXT("=a\n[b]=c"), QXT("<b|c>")},
  });
}

TEST(DictionaryScanner, BlanksAroundTheKeyAndInFrontOfTheValueAreDropped) {
  ExpectSteps({
      {QXT("[Open]= Ouvrir  \r\n"), QXT("<Open|Ouvrir  >")},
      {QXT("[ Save ]=x"), QXT("<Save|x>")},
      {QXT("[  a  b  ]=   x"), QXT("<a  b|x>")},
      {QXT("[\ta]=\tx"), QXT("<\ta|\tx>")},  // a tab is no blank
      {QXT("[\u00A0a]=\u3000x"), QXT("<\u00A0a|\u3000x>")},
  });
}

TEST(DictionaryScanner, WhatIsNoKeyIsSkipped) {
  ExpectSteps({
      {QXT(""), QXT("")},
      {QXT("plain text = nothing\r\n"), QXT("")},
      {QXT("[]=x\n[a]=b"), QXT("~<a|b>")},
      {QXT("[  ]=x\n[a]=b"), QXT("~<a|b>")},
      {QXT("[open\r\n[a]=b"), QXT("~<a|b>")},
      {QXT("[open\n]=x\n[a]=b"), QXT("~<a|b>")},
      {QXT("[\n"), QXT("~")},
      {QXT("[\r\n[\r\n"), QXT("~~")},
      {QXT("]=x\n[a]=b"), QXT("<a|b>")},
  });
}

TEST(DictionaryScanner, AKeyThatEndsInAnOpeningBracketIsSkipped) {
  ExpectSteps({
      {QXT("[a[]=x\n[b]=c"), QXT("~<b|c>")},
      {QXT("[a[ ]=x\n[b]=c"), QXT("~<b|c>")},
      {QXT("[[]=x"), QXT("~")},
      {QXT("[a[]"), QXT("~")},
      {QXT("[a[][b]=c"), QXT("~<b|c>")},  // the next one is looked for from the bracket on
  });
}

TEST(DictionaryScanner, TheEqualsSignMayStandOnALaterLine) {
  ExpectSteps({
      {QXT("[A]\r\n[B]=x\r\n"), QXT("<A|x>")},
      {QXT("[A]\n\n\ntext\n=x\n[B]=y"), QXT("<A|x><B|y>")},
      {QXT("[A]\n[B\n[C[]=x\n"), QXT("<A|x>")},
      {QXT("[A]\r\n[B]\r\n"), QXT("")},
  });
}

TEST(DictionaryScanner, TheFirstCharacterOfTheValueMayBeALineEnd) {
  ExpectSteps({
      {QXT("[A]=\r\n[B]=x"), QXT("<A|\r><B|x>")},
      {QXT("[A]=   \r\n[B]=x"), QXT("<A|\r><B|x>")},
      {QXT("[A]=\n[B]=x"), QXT("<A|\n[B]=x>")},
      {QXT("[A]=\n\n[B]=x"), QXT("<A|\n><B|x>")},
      {QXT("[A]=\r"), QXT("<A|\r>")},
      {QXT("[A]=\n"), QXT("<A|\n>")},
  });
}

TEST(DictionaryScanner, TheTextMayEndAnywhere) {
  ExpectSteps({
      {QXT("["), QXT("")},
      {QXT("[A"), QXT("")},
      {QXT("[A]"), QXT("")},
      {QXT("[A] "), QXT("")},
      {QXT("[A]="), QXT("<A|>")},
      {QXT("[A]=  "), QXT("<A|>")},
      {QXT("[A]=x"), QXT("<A|x>")},
      {QXT("[]"), QXT("~")},
      {QXT("[B]=y\n[A"), QXT("<B|y>")},
  });
}

TEST(DictionaryScanner, KeysAndValuesEndAtAZeroTheScanGoesOn) {
  ExpectSteps({
      {Text(QXT("[a\0b]=c\0d\n[e]=f"), 16), QXT("<a|c><e|f>")},
      {Text(QXT("[a \0b]=c"), 8), QXT("<a |c>")},
      {Text(QXT("[\0b]=c\n[d]=e"), 13), QXT("~<d|e>")},
      {Text(QXT("[a[\0b]=c\n[d]=e"), 15), QXT("~<d|e>")},
      {Text(QXT("[a]=\0b\n[d]=e"), 12), QXT("<a|><d|e>")},
      {Text(QXT("\0\0[a]\0=\0"), 8), QXT("<a|>")},
  });
}

// In memory that ends where the text does.
TEST(DictionaryScannerMalformed, EveryPrefixIsScanned) {
  const Text whole = QXT("[A]\r\n[B]= x \r\n[ C[ ]=y\n[]=\n[DICTIONARY_MAINID]=7\r\n[D]=\r\n[E]=z");
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    const std::unique_ptr<QXChar[]> exact(new QXChar[size]);
    std::copy_n(whole.data(), size, exact.get());
    EXPECT_LE(Steps({exact.get(), size}).size(), 2 * size + 3) << size;
  }
  EXPECT_EQ(support::Printable(Steps(whole)), "<A|x >~~<DICTIONARY_MAINID|7><D|\r><E|z>");
}

TEST(DictionaryScannerMalformed, ManyBracketsTakeLinearTime) {
  constexpr std::size_t kMany = 1'000'000;
  EXPECT_EQ(Steps(support::Repeat('[', kMany)), QXT(""));
  EXPECT_EQ(Steps(support::Repeat('[', kMany) + QXT("]=x")), QXT("~"));
  Text lines;
  for (std::size_t i = 0; i < kMany / 4; ++i) {
    lines += QXT("[a[]");
  }
  EXPECT_EQ(Steps(lines), support::Repeat('~', kMany / 4));
}

}  // namespace
