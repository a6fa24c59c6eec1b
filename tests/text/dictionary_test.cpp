// dictionary_test.cpp - texts translated through the exported functions.

#include "support/guard_new.h"
#include "text/dictionary_fixture.h"

#include <memory>
#include <new>

namespace {

using support::kFailed;
using support::Text;
using support::TextOf;

class Dictionary : public support::DictionaryTest {};
using DictionaryKept = Dictionary;

TEST_F(Dictionary, TranslatesWhatItHolds) {
  Write(QXT("a.ini"), "[Open]= Ouvrir  \r\n[ Save ]=Enregistrer\r\n");
  ASSERT_EQ(Load(), 0);
  EXPECT_EQ(Translated(QXT("Open")), QXT("Ouvrir  ")) << "blanks at the end stay";
  EXPECT_EQ(Translated(QXT("Save")), QXT("Enregistrer")) << "those inside the brackets do not";
  EXPECT_EQ(Translated(QXT(" Save ")), QXT(" Save "));
  EXPECT_EQ(Translated(QXT("open")), QXT("open")) << "case counts";
  EXPECT_EQ(Translated(QXT("Ope")), QXT("Ope"));
  EXPECT_EQ(Translated(QXT("Opens")), QXT("Opens"));
}

TEST_F(Dictionary, ATextWithoutTranslationGivesTheDefault) {
  Write(QXT("a.ini"), "[a]=b\n[empty]=");
  ASSERT_EQ(Load(), 0);
  EXPECT_EQ(TextOf(QXVTranslate(QXT("x"), QXT("default"), 0)), QXT("default"));
  EXPECT_EQ(TextOf(QXVTranslate(QXT("a"), QXT("default"), 0)), QXT("b"));
  EXPECT_EQ(TextOf(QXVTranslate(QXT("empty"), QXT("default"), 0)), QXT("")) << "an empty translation is one";
  EXPECT_EQ(TextOf(QXVTranslate(QXT(""), QXT("default"), 0)), QXT("default"));
}

TEST_F(Dictionary, BeforeAnyLoadTheDefaultIsGivenAndNothingIsMissing) {
  EXPECT_EQ(Translated(QXT("Open")), QXT("Open"));
  EXPECT_EQ(TextOf(QXVTranslate(QXT("Open"), QXT("default"), 7)), QXT("default"));
  CQXArray<CQXString, CQXString&> texts;
  texts.SetSize(2);
  EXPECT_EQ(QXVGetMissingTexts(texts), 0);
  EXPECT_EQ(texts.GetSize(), 0);
  Write(QXT("a.ini"), "[a]=b\n");
  ASSERT_EQ(Load(), 0);
  EXPECT_EQ(QXVGetMissingTexts(texts), 1);
  EXPECT_EQ(texts.GetSize(), 0);
}

TEST_F(Dictionary, IdentifierZeroAsksEveryDictionaryInOrder) {
  Write(QXT("a.ini"), "[one]=first\n");
  Write(QXT("b.ini"), "[DICTIONARY_MAINID]=5\n[one]=second\n[two]=second\n");
  ASSERT_EQ(Load(), 0);
  EXPECT_EQ(Translated(QXT("one")), QXT("first"));
  EXPECT_EQ(Translated(QXT("two")), QXT("second"));
  EXPECT_EQ(Missing(), std::vector<Text>()) << "what the first lacks and the second has is not missing";
}

TEST_F(Dictionary, AnIdentifierAsksItsDictionaryOnly) {
  Write(QXT("a.ini"), "[DICTIONARY_MAINID]=7\n[one]=seven\n");
  Write(QXT("b.ini"), "[one]=eight\n[two]=zwei\n[dictionary_MainId]= 8 \n");
  Write(QXT("c.ini"), "[three]=three\n");
  ASSERT_EQ(Load(), 0);
  EXPECT_EQ(Translated(QXT("one"), 7), QXT("seven"));
  EXPECT_EQ(Translated(QXT("one"), 8), QXT("eight"));
  EXPECT_EQ(Translated(QXT("two"), 7), QXT("two"));
  EXPECT_EQ(Translated(QXT("three"), 8), QXT("three"));
  EXPECT_EQ(Translated(QXT("one"), 9), QXT("one")) << "nobody's identifier";
  EXPECT_EQ(Translated(QXT("DICTIONARY_MAINID")), QXT("DICTIONARY_MAINID")) << "no entry";
}

TEST_F(Dictionary, AnUnknownTextIsRememberedAsMissing) {
  Write(QXT("a.ini"), "[DICTIONARY_MAINID]=1\n[a]=b\n");
  ASSERT_EQ(Load(), 0);
  EXPECT_EQ(TextOf(QXVTranslate(QXT("unknown"), QXT("default"), 7)), QXT("default"));
  EXPECT_EQ(TextOf(QXVTranslate(QXT("a"), QXT("default"), 7)), QXT("default"));
  (void)Translated(QXT("b"));
  (void)Translated(QXT("B"));
  (void)Translated(QXT("b"), 1);
  (void)Translated(QXT("aa"));
  (void)Translated(QXT("\u4E2D"));
  (void)Translated(QXT(""));
  (void)Translated(QXT("a"), 1);  // found
  EXPECT_EQ(Missing(), (std::vector<Text>{QXT(""), QXT("B"), QXT("a"), QXT("aa"), QXT("b"), QXT("unknown"), QXT("\u4E2D")}))
      << "each once, by the values of their characters";
  ASSERT_EQ(Load(), 0);
  EXPECT_EQ(Missing(), std::vector<Text>()) << "of the new set nothing is missing yet";
}

TEST_F(Dictionary, ReleasingForgetsAll) {
  Write(QXT("a.ini"), "[a]=b\n");
  ASSERT_EQ(Load(), 0);
  (void)Translated(QXT("x"));
  QXVReleaseDictionarys();
  EXPECT_EQ(Translated(QXT("a")), QXT("a"));
  EXPECT_EQ(Missing(), std::vector<Text>());
  QXVReleaseDictionarys();  // nothing to release
  ASSERT_EQ(Load(), 0);
  EXPECT_EQ(Translated(QXT("a")), QXT("b"));
}

TEST_F(Dictionary, ASecondLoadReplacesTheWholeSet) {
  Write(QXT("one\\a.ini"), "[a]=1\n[b]=1\n");
  Write(QXT("two\\a.ini"), "[a]=2\n");
  ASSERT_EQ(QXVLoadDictionarys(m_folder.File(QXT("one\\")).c_str()), 0);
  EXPECT_EQ(Translated(QXT("a")), QXT("1"));
  ASSERT_EQ(QXVLoadDictionarys(m_folder.File(QXT("two\\")).c_str()), 0);
  EXPECT_EQ(Translated(QXT("a")), QXT("2"));
  EXPECT_EQ(Translated(QXT("b")), QXT("b"));
}

TEST_F(Dictionary, ALaterEntryReplacesAnEarlierOne) {
  Write(QXT("a.ini"), "[a]=1\n[b]=x\n[a]=2\n[ a]=3\n");
  ASSERT_EQ(Load(), 0);
  EXPECT_EQ(Translated(QXT("a")), QXT("3"));
}

TEST_F(Dictionary, OfFiftyThousandEntriesEachIsFound) {
  std::string bytes;
  for (int i = 0; i < 50'000; ++i) {
    bytes += "[text number " + std::to_string(i) + "]=translation " + std::to_string(i) + "\r\n";
  }
  Write(QXT("a.ini"), bytes);
  ASSERT_EQ(Load(), 0);
  for (int i = 0; i < 50'000; i += 7) {
    const std::string number = std::to_string(i);
    const Text wide(number.begin(), number.end());
    ASSERT_EQ(Translated((QXT("text number ") + wide).c_str()), QXT("translation ") + wide);
  }
}

TEST_F(Dictionary, ATextPastAnEarlierZeroIsNotLookedAt) {
  Write(QXT("a.ini"), "[ab]=found\n");
  ASSERT_EQ(Load(), 0);
  CQXString text(QXT("ab_rest"));
  const_cast<QXChar*>(static_cast<const QXChar*>(text))[2] = 0;
  EXPECT_EQ(TextOf(QXVTranslate(text, 0)), QXT("found"));
}

TEST_F(Dictionary, ARefusedAllocationWhileLoadingLeavesNothingLoaded) {
  Write(QXT("a.ini"), "[a]=1\n");
  Write(QXT("sub\\b.ini"), "[b]=2\n");
  const CQXString folder(m_folder.Path().c_str());
  bool finished = false;
  for (std::size_t index = 0; !finished && index < 1000; ++index) {
    QXVReleaseDictionarys();
    const std::size_t live = support::LiveArrays();
    const support::FailAllocation fail(index);
    int result = 1;
    try {
      result = QXVLoadDictionarys(folder);
    } catch (const std::bad_alloc&) {
      ASSERT_TRUE(fail.Refused());
    }
    finished = !fail.Refused();
    if (result != 0) {
      EXPECT_EQ(support::LiveArrays(), live) << index;
      EXPECT_EQ(Translated(QXT("a")), QXT("a")) << index;
    } else if (fail.Refused()) {
      EXPECT_EQ(Translated(QXT("a")), QXT("1")) << index << ": never the half of it";
      EXPECT_EQ(Translated(QXT("b")), QXT("2")) << index;
    }
  }
  EXPECT_TRUE(finished);
  EXPECT_EQ(Translated(QXT("a")), QXT("1"));
  EXPECT_EQ(Translated(QXT("b")), QXT("2"));
}

// What is kept.

TEST_F(DictionaryKept, AFailedLoadLeavesNothingLoaded) {
  Write(QXT("a.ini"), "[a]=b\n");
  const Text folder = m_folder.Path();
  for (const Text& bad : {Text(QXT("C:")), Text(QXT("\\")), folder.substr(0, folder.size() - 1), m_folder.File(QXT("none\\"))}) {
    ASSERT_EQ(Load(), 0);
    EXPECT_EQ(QXVLoadDictionarys(bad.c_str()), kFailed) << support::Printable(bad);
    EXPECT_EQ(Translated(QXT("a")), QXT("a")) << support::Printable(bad);
    (void)Translated(QXT("x"));
    EXPECT_EQ(Missing(), std::vector<Text>()) << support::Printable(bad);
  }
}

TEST_F(DictionaryKept, AKeyAloneOnItsLineTakesTheNextValue) {
  Write(QXT("a.ini"), "[A]\r\n[B]=x\r\n");
  ASSERT_EQ(Load(), 0);
  EXPECT_EQ(Translated(QXT("A")), QXT("x"));
  EXPECT_EQ(Translated(QXT("B")), QXT("B")) << "not stored";
}

TEST_F(DictionaryKept, AKeyThatEndsInAnOpeningBracketIsSkipped) {
  Write(QXT("a.ini"), "[a[]=x\r\n[b]=y\r\n");
  ASSERT_EQ(Load(), 0);
  EXPECT_EQ(Translated(QXT("a[")), QXT("a["));
  EXPECT_EQ(Translated(QXT("b")), QXT("y"));
}

TEST_F(DictionaryKept, AnEmptyValueIsTheCarriageReturn) {
  Write(QXT("a.ini"), "[A]=\r\n[B]=   \r\n[C]=x\r\n");
  ASSERT_EQ(Load(), 0);
  EXPECT_EQ(Translated(QXT("A")), QXT("\r"));
  EXPECT_EQ(Translated(QXT("B")), QXT("\r"));
  EXPECT_EQ(Translated(QXT("C")), QXT("x"));
}

TEST_F(DictionaryKept, AnEmptyValueBeforeALineFeedTakesTheNextLine) {
  Write(QXT("a.ini"), "[A]=\n[B]=x\n[C]=y\n");
  ASSERT_EQ(Load(), 0);
  EXPECT_EQ(Translated(QXT("A")), QXT("\n[B]=x"));
  EXPECT_EQ(Translated(QXT("B")), QXT("B"));
  EXPECT_EQ(Translated(QXT("C")), QXT("y"));
}

TEST_F(DictionaryKept, AnExtensionInCapitalsIsNotCollected) {
  Write(QXT("a.INI"), "[a]=1\n");
  EXPECT_EQ(Load(), kFailed);
  Write(QXT("b.Ini"), "[a]=2\n");
  EXPECT_EQ(Load(), kFailed);
  Write(QXT("c.ini"), "[c]=3\n");
  EXPECT_EQ(Load(), 0);
  EXPECT_EQ(Translated(QXT("a")), QXT("a"));
  EXPECT_EQ(Translated(QXT("c")), QXT("3"));
}

TEST_F(DictionaryKept, OnlyTheFirstDictionaryOfAnIdentifierIsAsked) {
  Write(QXT("a.ini"), "[DICTIONARY_MAINID]=7\n[one]=1\n");
  Write(QXT("b.ini"), "[DICTIONARY_MAINID]=7\n[two]=2\n");
  ASSERT_EQ(Load(), 0);
  EXPECT_EQ(Translated(QXT("one"), 7), QXT("1"));
  EXPECT_EQ(Translated(QXT("two"), 7), QXT("two"));
  EXPECT_EQ(Missing(), std::vector<Text>{QXT("two")});
  EXPECT_EQ(Translated(QXT("two"), 0), QXT("2"));
}

TEST_F(DictionaryKept, AMainIdentifierThatIsNoNumberIsWhatWasReadOfIt) {
  const struct {
    const char* value;
    unsigned id;
  } rows[] = {{"12abc", 12}, {"4294967295", 429496729}, {"-5", 4294967291}, {"-5x", 5}, {" 12  ", 12}, {"12\t", 12},
              {"3.5", 3},    {"2147483647", 2147483647}};
  for (const auto& row : rows) {
    Write(QXT("a.ini"), std::string("[DICTIONARY_MAINID]=") + row.value + "\r\n[a]=b\r\n");
    ASSERT_EQ(Load(), 0);
    EXPECT_EQ(Translated(QXT("a"), row.id), QXT("b")) << row.value;
  }
  Write(QXT("a.ini"), "[a]=b\r\n[DICTIONARY_MAINID]=7\r\n[DICTIONARY_MAINID]=");
  ASSERT_EQ(Load(), 0);
  EXPECT_EQ(Translated(QXT("a"), 7), QXT("b")) << "an empty one changes nothing";
  Write(QXT("a.ini"), "[a]=b\r\n[DICTIONARY_MAINID]=7\r\n[DICTIONARY_MAINID]=\r\n");
  ASSERT_EQ(Load(), 0);
  EXPECT_EQ(Translated(QXT("a"), 7), QXT("a")) << "a line end is no digit";
}

}  // namespace
