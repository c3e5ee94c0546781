// Card codes, CCard, names, masks and the other encodings.
#include <gtest/gtest.h>

#include <clocale>

#include "test_util.h"

namespace {

TEST(Cards, CCardFromCodesKeepsTheAceLow) {
  EXPECT_EQ(CCard(12).GetRank(), 1);
  EXPECT_EQ(CCard(51).GetRank(), 1);
  EXPECT_EQ(CCard(51).GetSuit(), Spades);
  EXPECT_EQ(CCard(0).GetRank(), 2);
  EXPECT_EQ(CCard(0).GetSuitAsInt(), 0);
  for (int code = 0; code < 52; ++code) {
    EXPECT_EQ(CCard(code).GetInt(), code);
    EXPECT_EQ(CCard(code).GetName2(), kCardNames[code]);
    EXPECT_EQ(GetCardByName(kCardNames[code]), code);
  }
}

TEST(Cards, CCardConstructorsAndDefaults) {
  const CCard empty;
  EXPECT_EQ(empty.GetRank(), 0);
  EXPECT_EQ(empty.GetSuit(), Hearts);
  EXPECT_EQ(CCard(L'T', L'h').GetName2(), L"Th");
  EXPECT_EQ(CCard(L'T', L'h').GetCardName(), L"10 of hearts");
  EXPECT_EQ(CCard(51).GetCardName(), L"Ace of spades");
  EXPECT_EQ(CCard(CString(L"a"), CString(L"S")).GetInt(), 51);
  EXPECT_EQ(CCard(CString(L"Kx"), CString(L"hearts")).GetName2(), L"Kh");
  const CCard lower_case(L'a', L's');  // the letter form is exact: 'a' is no rank
  EXPECT_EQ(lower_case.GetRank(), 0);
  EXPECT_EQ(lower_case.GetSuit(), Spades);
  EXPECT_EQ(CCard(Diamonds, 13).GetName2(), L"Kd");
  EXPECT_EQ(CCard(11, Clubs).GetName2(), L"Jc");
  CCard odd;
  odd.m_suit = static_cast<Suit>(7);
  EXPECT_EQ(odd.GetSuitAsInt(), 0);
}

TEST(Cards, ComparisonsLookupsAndMembership) {
  // CCard comparisons ignore suits.
  EXPECT_TRUE(CCard(51) == CCard(38));
  EXPECT_FALSE(CCard(51) != CCard(38));
  EXPECT_TRUE(CCard(GetCardByName(L"Kc")) < CCard(GetCardByName(L"Ad")));
  EXPECT_TRUE(CCard(GetCardByName(L"Ad")) > CCard(GetCardByName(L"Kc")));
  EXPECT_FALSE(CCard(GetCardByName(L"2c")) < CCard(GetCardByName(L"2s")));

  EXPECT_EQ(GetCardByName(L"As"), 51);
  EXPECT_EQ(GetCardByName(L"as"), -1);
  EXPECT_EQ(GetCardByName(L"Ash"), -1);
  EXPECT_EQ(GetCardByName(L""), -1);
  EXPECT_EQ(GetCardRankByName(L'T'), 8);
  EXPECT_EQ(GetCardRankByName(L'A'), 12);
  EXPECT_EQ(GetCardRankByName(L't'), -1);
  EXPECT_EQ(GetCardSuitByName(L's'), 3);
  EXPECT_EQ(GetCardSuitByName(L'S'), -1);
  EXPECT_EQ(GetCardRank(51), 12);
  EXPECT_EQ(GetInverseCardRank(51), 0);
  EXPECT_EQ(GetInverseCardRank(13), 12);
  EXPECT_TRUE(isSuit(0, 12));
  EXPECT_FALSE(isSuit(12, 13));

  EXPECT_TRUE(comparefun(51, 38));  // As before Ah
  EXPECT_FALSE(comparefun(38, 51));
  EXPECT_FALSE(comparefun(12, 51));  // equal ranks, smaller code
  EXPECT_TRUE(comparefun(12, 50));   // Ac before Ks
  const int cards[] = {5, 9, 44};
  EXPECT_TRUE(isExist(44, cards, 3));
  EXPECT_FALSE(isExist(44, cards, 2));
  EXPECT_FALSE(isExist(5, cards, 0));
  EXPECT_FALSE(isExist(5, cards, -3));
}

TEST(Cards, MasksAndTheirConversions) {
  const int codes[] = {0, 0, 51};
  const uint64_t mask = ArrayToInt64(3, codes);
  EXPECT_EQ(mask, 0x0008000000000001ull);
  int out[64], count = -1;
  EXPECT_EQ(Int64ToArray(mask, count, out), 2);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(std::vector<int>(out, out + 2), (std::vector<int>{0, 51}));
  EXPECT_EQ(ArrayToInt64(0, codes), 0u);
  const int wrapping[] = {64, 115};
  EXPECT_EQ(ArrayToInt64(2, wrapping), (1ull << 0) | (1ull << 51));

  std::vector<int> vec = {7, 7, 7};
  EXPECT_EQ(Int64ToVec(0x0000008004002001ull, vec), 4);
  EXPECT_EQ(vec, (std::vector<int>{0, 13, 26, 39}));
  std::vector<uint32_t> uvec;
  EXPECT_EQ(Int64ToVec(1ull << 63, uvec), 1);
  EXPECT_EQ(uvec[0], 63u);
  EXPECT_EQ(VecToInt64(vec), 0x0000008004002001ull);
  EXPECT_EQ(VecToInt64({}), 0u);

  EXPECT_EQ(MakeOmahaHand(0, 13, 26, 39), 0x0000008004002001ull);
  EXPECT_EQ(MakeOmahaHand(0, 1, 2, 3, 4), 0x1Full);
  EXPECT_EQ(MakeOmahaHand(0, 1, 2, 3, 4, 5), 0x3Full);
  EXPECT_EQ(MakeOmahaHand(0, 1, 2, 3, 4, 5, 5), 0x3Full);
}

TEST(Cards, OtherEncodings) {
  using namespace pokermath;
  EXPECT_EQ(short_deck_code(4), 0);    // 6c
  EXPECT_EQ(short_deck_code(51), 35);  // As
  EXPECT_EQ(short_deck_code(3), -1);   // 5c
  for (int k = 0; k < 36; ++k) EXPECT_EQ(short_deck_code(card_from_short_deck(k)), k);
  EXPECT_EQ(rank_major_code(39), 3);  // 2s
  EXPECT_EQ(one_based_code(39), 4);
  EXPECT_EQ(one_based_code(51), 52);
  EXPECT_EQ(prime_word(24), 0x08004B25u);  // Kd
  // The code tables are built from these functions at compile time; each rank-major code 0..51 is
  // used exactly once.
  const CPokerDeck deck;
  uint64_t seen = 0;
  for (int c = 0; c < 52; ++c) {
    EXPECT_EQ(deck[c], prime_word(c));
    seen |= 1ull << rank_major_code(c);
  }
  EXPECT_EQ(seen, (1ull << 52) - 1);
}

TEST(Cards, TextsAndTheirConversion) {
  wchar_t* wide = nullptr;
  charTOwchar("As Kd", wide);
  ASSERT_NE(wide, nullptr);
  EXPECT_EQ(CString(wide), L"As Kd");
  delete[] wide;
  charTOwchar("", wide);
  EXPECT_EQ(CString(wide), L"");
  delete[] wide;

  EXPECT_EQ(CString(kWildcardNames[0]), L"Xc");
  EXPECT_EQ(CString(kWildcardNames[4 + 12]), L"Ax");
  EXPECT_EQ(CString(kWildcardNames[17]), L"Xx");
  EXPECT_EQ(CString(kRankNames[0]), L"Ace");
  EXPECT_EQ(CString(kRankNames[12]), L"King");
  EXPECT_EQ(CString(kSuitNames[1]), L"diamonds");
}

}  // namespace
