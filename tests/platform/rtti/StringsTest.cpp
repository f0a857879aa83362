#include "platform/rtti/Classes.h"
#include "platform/streaming/Streams.h"

#include "tests/support/Corpus.h"
#include "tests/support/Errors.h"
#include "tests/support/SaveFailures.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>

using lumora::test::MessageOf;

namespace {

std::vector<std::string> All(const TStrings& list) {
  std::vector<std::string> out;
  for (int i = 0; i < list.Count(); ++i) out.push_back(list[i]);
  return out;
}

using V = std::vector<std::string>;

}  // namespace

TEST(StringListTest, AddInsertDeleteExchangeMove) {
  TStringList list;
  EXPECT_EQ(list.Add("b"), 0);
  EXPECT_EQ(list.Add("c"), 1);
  list.Insert(0, "a");
  list.Append("d");
  EXPECT_EQ(All(list), (V{"a", "b", "c", "d"}));
  list.Delete(1);
  EXPECT_EQ(All(list), (V{"a", "c", "d"}));
  list.Exchange(0, 2);
  EXPECT_EQ(All(list), (V{"d", "c", "a"}));
  list.Move(0, 2);
  EXPECT_EQ(All(list), (V{"c", "a", "d"}));
  list.SetStrings(1, "x");
  EXPECT_EQ(list.Strings(1), "x");
  list.Clear();
  EXPECT_EQ(list.Count(), 0);
}

TEST(StringListTest, IndexErrors) {
  TStringList list;
  list.Add("a");
  EXPECT_EQ(MessageOf<EStringListError>([&] { list.Strings(1); }), "List index out of bounds (1)");
  EXPECT_EQ(MessageOf<EStringListError>([&] { list.Strings(-1); }), "List index out of bounds (-1)");
  EXPECT_EQ(MessageOf<EStringListError>([&] { list.Delete(5); }), "List index out of bounds (5)");
  EXPECT_EQ(MessageOf<EStringListError>([&] { list.Insert(2, "x"); }), "List index out of bounds (2)");
  EXPECT_EQ(MessageOf<EStringListError>([&] { list.Exchange(0, 3); }), "List index out of bounds (3)");
  EXPECT_EQ(MessageOf<EStringListError>([&] { list.Objects(1); }), "List index out of bounds (1)");
  EXPECT_EQ(MessageOf<EStringListError>([&] { list.Move(0, 1); }), "List index out of bounds (1)");
  EXPECT_EQ(All(list), (V{"a"}));
}

TEST(StringListTest, ObjectsTravelWithTheirStrings) {
  TStringList list;
  TStringList a, b;
  list.AddObject("one", &a);
  list.AddObject("two", &b);
  list.InsertObject(0, "zero", nullptr);
  EXPECT_EQ(list.Objects(1), &a);
  list.Move(2, 0);
  EXPECT_EQ(list.Objects(0), &b);
  list.Exchange(0, 2);
  EXPECT_EQ(list.Objects(2), &b);
  EXPECT_EQ(list.IndexOfObject(&a), 0);
  EXPECT_EQ(list.IndexOfObject(nullptr), 1);
  list.SetObjects(0, &a);
  EXPECT_EQ(list.Objects(0), &a);
  TStringList copy;
  copy.Assign(&list);
  EXPECT_EQ(copy.Objects(2), &b);
  EXPECT_TRUE(copy.Equals(&list));
}

TEST(StringListTest, FindingIgnoresCaseUnlessAsked) {
  TStringList list;
  list.SetText("Alpha\r\nbeta\r\nGamma\r\n");
  EXPECT_EQ(list.IndexOf("BETA"), 1);
  EXPECT_EQ(list.IndexOf("delta"), -1);
  list.SetCaseSensitive(true);
  EXPECT_EQ(list.IndexOf("BETA"), -1);
  EXPECT_EQ(list.IndexOf("beta"), 1);
}

TEST(StringListTest, NamesAndValues) {
  TStringList list;
  list.Add("Left=10");
  list.Add("Caption=a=b");
  list.Add("plain");
  EXPECT_EQ(list.Names(0), "Left");
  EXPECT_EQ(list.Names(2), "");
  EXPECT_EQ(list.Values("caption"), "a=b");
  EXPECT_EQ(list.Values("Top"), "");
  EXPECT_EQ(list.IndexOfName("LEFT"), 0);
  EXPECT_EQ(list.IndexOfName("plain"), -1);
  list.SetValue("Top", "5");
  EXPECT_EQ(list[3], "Top=5");
  list.SetValue("Left", "11");
  EXPECT_EQ(list[0], "Left=11");
  list.SetValue("Left", "");
  EXPECT_EQ(list.IndexOfName("Left"), -1);
  EXPECT_EQ(list.Count(), 3);
}

TEST(StringListTest, TextSplitsOnEveryLineEnd) {
  TStringList list;
  list.SetText("a\r\nb\nc\rd");
  EXPECT_EQ(All(list), (V{"a", "b", "c", "d"}));
  EXPECT_EQ(list.Text(), "a\r\nb\r\nc\r\nd\r\n");
  list.SetText("a\r\n\r\nb\r\n");
  EXPECT_EQ(All(list), (V{"a", "", "b"}));
  list.SetText("\n\r");  // LF then CR: two empty lines
  EXPECT_EQ(All(list), (V{"", ""}));
  list.SetText("");
  EXPECT_EQ(list.Count(), 0);
  EXPECT_EQ(list.Text(), "");
  list.SetText(std::string("x\0y\xFF", 4));
  EXPECT_EQ(list[0], std::string("x\0y\xFF", 4));  // every byte kept
}

TEST(StringListTest, CommaText) {
  TStringList list;
  list.SetCommaText("a, b c,\"d e\",\"f\"\"g\",,h");
  EXPECT_EQ(All(list), (V{"a", "b", "c", "d e", "f\"g", "", "h"}));
  EXPECT_EQ(list.CommaText(), "a,b,c,\"d e\",\"f\"\"g\",\"\",h");
  TStringList back;
  back.SetCommaText(list.CommaText());
  EXPECT_TRUE(back.Equals(&list));
  list.SetCommaText("  ");
  EXPECT_EQ(list.Count(), 0);
  list.SetCommaText("\"unterminated, still");
  EXPECT_EQ(All(list), (V{"unterminated, still"}));
  list.SetCommaText("x,");
  EXPECT_EQ(All(list), (V{"x"}));
  list.Clear();
  list.Add("");
  EXPECT_EQ(list.CommaText(), "\"\"");
}

TEST(StringListTest, SortedListsAndDuplicates) {
  TStringList list;
  list.SetText("pear\r\nApple\r\nfig\r\n");
  list.SetSorted(true);
  EXPECT_EQ(All(list), (V{"Apple", "fig", "pear"}));
  EXPECT_EQ(list.Add("banana"), 1);
  EXPECT_EQ(list.Add("APPLE"), 0);  // dupIgnore: the existing index
  EXPECT_EQ(list.Count(), 4);
  int index;
  EXPECT_TRUE(list.Find("FIG", index));
  EXPECT_EQ(index, 2);
  EXPECT_FALSE(list.Find("grape", index));
  EXPECT_EQ(index, 3);
  EXPECT_EQ(list.IndexOf("Pear"), 3);
  list.SetDuplicates(dupAccept);
  list.Add("fig");
  EXPECT_EQ(list.Count(), 5);
  list.SetDuplicates(dupError);
  EXPECT_EQ(MessageOf<EStringListError>([&] { list.Add("pear"); }), "String list does not allow duplicates");
  EXPECT_EQ(MessageOf<EStringListError>([&] { list.Insert(0, "zzz"); }), "Operation not allowed on sorted string list");
  EXPECT_EQ(MessageOf<EStringListError>([&] { list.SetStrings(0, "zzz"); }), "Operation not allowed on sorted string list");
  EXPECT_EQ(list.Count(), 5);
}

TEST(StringListTest, CustomSort) {
  TStringList list;
  list.SetCommaText("10,9,100,1");
  list.CustomSort([](TStringList* l, int a, int b) {
    const long long x = StrToInt(l->Strings(a)), y = StrToInt(l->Strings(b));
    return x < y ? -1 : x > y ? 1 : 0;
  });
  EXPECT_EQ(All(list), (V{"1", "9", "10", "100"}));
  list.Sort();
  EXPECT_EQ(All(list), (V{"1", "10", "100", "9"}));
}

TEST(StringListTest, ChangeEventsAndUpdateCounting) {
  TStringList list;
  int changes = 0, changing = 0;
  list.OnChange = [&](TObject* sender) {
    EXPECT_EQ(sender, &list);
    ++changes;
  };
  list.OnChanging = [&](TObject*) { ++changing; };
  list.Add("a");
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(changing, 1);
  list.BeginUpdate();
  list.BeginUpdate();
  EXPECT_EQ(changing, 2);
  list.Add("b");
  list.Add("c");
  list.EndUpdate();
  EXPECT_EQ(changes, 1);
  list.EndUpdate();
  EXPECT_EQ(changes, 2);
  EXPECT_EQ(list.UpdateCount(), 0);
  list.EndUpdate();  // one too many does nothing
  EXPECT_EQ(changes, 2);
  list.SetText("x\r\ny\r\nz\r\n");
  EXPECT_EQ(changes, 3);
  list.Clear();
  list.Clear();
  EXPECT_EQ(changes, 4);
}

TEST(StringListTest, StreamsAndFilesAreEightBitLinesWithCrLf) {
  TStringList list;
  TStringStream in(std::string("one\ntwo\r\nthr\xE9\xE9\r"));
  list.LoadFromStream(in);
  EXPECT_EQ(All(list), (V{"one", "two", "thr\xE9\xE9"}));
  TStringStream out;
  list.SaveToStream(out);
  EXPECT_EQ(out.DataString(), "one\r\ntwo\r\nthr\xE9\xE9\r\n");

  const auto path = std::filesystem::temp_directory_path() / "lumora-strings-test.txt";
  list.SaveToFile(path.string());
  TStringList back;
  back.LoadFromFile(path.string());
  EXPECT_TRUE(back.Equals(&list));
  std::filesystem::remove(path);
  EXPECT_EQ(MessageOf<EFOpenError>([&] { back.LoadFromFile(path.string()); }), "Cannot open file " + path.string());
  EXPECT_EQ(back.Count(), 3);
}

TEST(StringListTest, SaveToFileOnAFullDeviceLosesNothing) {
  lumora::test::TTempDir dir;
  const std::string name = dir / "lines.txt";
  TStringList list;
  list.SetText("previous");
  list.SaveToFile(name);
  list.Clear();
  for (int i = 0; i < 100; ++i) list.Add("a line that makes the file longer than the device allows");
  {
    lumora::test::TFailingDevice device(200);
    EXPECT_EQ(MessageOf<EFCreateError>([&] { list.SaveToFile(name); }), "Cannot create file " + name + ": File too large");
  }
  EXPECT_EQ(lumora::test::ReadFileBytes(name), "previous\r\n");
  EXPECT_EQ(lumora::test::FolderEntries(dir.Path()), V{"lines.txt"});
}

TEST(StringListTest, SaveToFileInAReadOnlyFolderLosesNothing) {
  lumora::test::TTempDir dir;
  const std::string name = dir / "lines.txt";
  TStringList list;
  list.SetText("previous");
  list.SaveToFile(name);
  list.SetText("new");
  lumora::test::MakeReadOnlyForOthers(dir.Path());
  const std::string message = lumora::test::RunAsOtherUser(
      [&] { return MessageOf<EFCreateError>([&] { list.SaveToFile(name); }); });
  EXPECT_EQ(message, "Cannot create file " + name + ": Permission denied");
  EXPECT_EQ(lumora::test::ReadFileBytes(name), "previous\r\n");
  EXPECT_EQ(lumora::test::FolderEntries(dir.Path()), V{"lines.txt"});
}

TEST(StringListTest, AssignAndAddStrings) {
  TStringList a, b;
  a.SetCommaText("x,y");
  b.SetCommaText("z");
  b.AddStrings(&a);
  EXPECT_EQ(All(b), (V{"z", "x", "y"}));
  b.Assign(&a);
  EXPECT_EQ(All(b), (V{"x", "y"}));
  EXPECT_TRUE(b.Equals(&a));
  b.Add("w");
  EXPECT_FALSE(b.Equals(&a));
  b.Assign(&b);
  EXPECT_EQ(b.Count(), 3);
}
