// A small language with everything that rules can say, for tests that need a whole one.
#ifndef MLDS_TESTS_SUPPORT_WHOLELANGUAGE_H
#define MLDS_TESTS_SUPPORT_WHOLELANGUAGE_H

namespace mlds_test {

/// Letters, words, phones, syllables, stress and durations; folding, expansions, captures, marks,
/// crossings, insertions and every way of running a block. It needs no other file.
inline constexpr const char* kWholeLanguage = R"(; a language of nowhere
language es
read "œ" as "oe"
tier letters from text : a á b c d e é f g h i í l m n o ó p q r s t u ú v x y z ch "." "," "?"
     "0" 1 2 3 4 5 6 7 8 9
  letters à = a
  letters k = c
  ignore "-" « »
  join ­
  expand "dr." as "doctor"
  expand [0-9]+ as spellout
  feature vowel = a á e é i í o ó u ú
  feature front = e é i í
  feature accent = á é í ó ú
  feature pause = "." "," "?"
tier word spans letters
  word = [letter]+
  weak : a de el la en y
  field open number
tier phone : a e i o u j w p b t d k g B f T s x tS m n N l r rr h
  feature manner : voc = a e i o u | glide = j w | stop = p b t d k g | fric = f T s x h B | affr = tS
                 | nasal = m n N | liquid = l r rr
  feature labial = p b B f m
  field stress number
tier syl
  field stress number
  field weight number
tier time ms
show phone with ' before [stress=1]
ipa phone : tS = tʃ | T = θ | B = β | N = ŋ
class strong = [a|á|e|é|o|ó]
pattern cluster = [stop|f] [liquid] | [-voc -glide]

block exceptions : letters -> phone within word each
  "yes": y -> i / # _ #
  h o y -> o[stress=1] j
  x:[n|m] =x -> n
block sounds : letters -> phone within word first
  ch -> tS
  r r -> rr
  r  -> rr / # _ | [n|l|s] _
  q u -> k / _ [front]
  g u -> g / _ [front]
  c  -> T / _ [front]
  g  -> x / _ [front]
  b|v -> B / [vowel] _ [vowel]
  n  -> N / _ (c ![front|h] | g | q)
  n  -> m / _ ^m (b|p|v) @m
  x  -> s / # _
  x  -> k s \ # _ | _ #
  x  -> s
  i  -> j / _ (strong | u)
  i  -> j / strong _ ![vowel]
  u  -> w / _ strong
  s  -> 0 / _ s
  á -> a[stress=1] , é -> e[stress=1] , í -> i[stress=1] , ó -> o[stress=1] , ú -> u[stress=1]
  a -> a , e -> e , i -> i , o -> o , u -> u , b -> b , v -> b , c -> k , q -> k , d -> d , f -> f
  g -> g , h -> 0 , l -> l , m -> m , n -> n , p -> p , r -> r , s -> s , t -> t , y -> j , z -> T
  . -> 0
block repairs : phone within word each
  0 -> e / # _ s [-voc -glide]
  0 -> h / [voc] _ #
  x:[voc] =x -> $x
  [voc]{2,3}? -> e[stress=1] u / # _ [nasal]
  x:[stop] y:[stop] -> $y $x[stress=0]
block backwards : phone within word each leftward
  h -> 0
  s -> x / _ (s|x)+ #
  0 -> r / [rr] _ &[glide]
block syllables : phone -> syl within word first
  [-voc]* [voc] [glide|liquid]? [-voc]*? -> syl / _ (cluster? [glide]? [voc] | #)
  . -> 0
block endings : word each
  &<letters: (. !#word)* [vowel|n|s] #word> [word] := [open=1]
block stress : syl within word each leftward
  &<phone: [-voc]* [voc stress=1]> . := [stress=1]
  !in(word: [weak]) in(word: [open=1]) [stress=0] := [stress=1] / # [stress=0]* _ [stress=0] #
  !in(word: [weak]) [stress=0] := [stress=1 weight=2] / # [stress=0]* _ #
block vowels : phone within word each
  in(syl: [stress=1]) [voc stress!=1] := [stress=1]
block lengths : phone -> time first
  [voc] -> 80 , [glide] -> 45 , [manner=nasal|liquid] -> 60
  . -> 70
block pauses : letters -> time each
  "," -> 200
  "."|"?" -> 400
block final : syl each
  [stress=1] ~ 130% \ _ <letters: [pause]> | _ <letters: !.>
  . ~ 150% / _ <letters: [pause]> | _ <letters: !.>

assert "chico" => tS 'i k o
)";

/// Sentences for it, the last ones with what it does not know.
inline constexpr const char* kSentences[] = {
    "El perro de la esquina, cruza la calle.",
    "¿Quién vio 17 noches? 3.000",
    "HOY innova y llueve, dr. Pérez-Gómez",
    "aaa ii ou, chicha strob xilófono examen ápto",
    "Œuvre kilo à co\u00adop «guerra» sss rrr",
    "",
    " ",
    ".",
    "día\tß 東京 \u0301 e\u0301a\u0302",
};

}  // namespace mlds_test

#endif
