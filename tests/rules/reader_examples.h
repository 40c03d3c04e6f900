// Whole rule files for the tests of the reader.
#ifndef MLDS_TESTS_READER_EXAMPLES_H
#define MLDS_TESTS_READER_EXAMPLES_H

namespace mlds::rules {

inline constexpr const char* kSpanish =
    R"mlr(; es.mlr                                        ";" begins a comment; "#" is a boundary
tier letters from text : a á b c d e é f g h i í j k l m n ñ o ó p q r s t u ú ü v w x y z
  feature vowel  = a á e é i í o ó u ú ü
  feature front  = e é i í
  feature nasal  = m n ñ
tier word spans letters                          ; a token over every run of letters
  word = [letter]+
  weak : el la de que                            ; words written so have that name
tier phone : a e i o u j w p b t d k g tS f T s x jj B D G m n J N l r rr
  feature voc    = a e i o u
  feature manner : stop = p b t d k g | fric = f T s x jj | glide = j w
  field stress number
show phone with ' before [stress=1]
class A = a | e | o                              ; a class is a pattern for one token

block sounds : letters -> phone within word first
  ch          -> tS
  r           -> rr            / # _ | [n|l|s] _
  rr          -> rr
  qu          -> k             / _ [front]
  gu          -> G             / [-nasal] _ [front]
  gu          -> g             / _ [front]
  c           -> T             / _ [front]
  g           -> x             / _ [front]
  b|v         -> B             / [-nasal] _
  n           -> N             / _ (g | j | k | q | c ![front|h])
  i           -> j             / _ (A | u)  |  A _
  x           -> k s           \ # _                          ; "\" says where not
  é           -> e[stress=1]
  h           -> 0
  x           -> s  ,  c -> k  ,  r -> r                      ; and so on: letters by themselves
block stress : phone within word each                                 ; the condition on the word stands in the focus
  !in(word: [weak]) [voc stress=0] := [stress=1]  / # [stress=0]* _ [-voc]* [voc stress=0] (n|s)? #   ; last but one
  !in(word: [weak]) [voc stress=0] := [stress=1]  / # [stress=0]* _ [-voc]* #                         ; else the last

assert "queso"  => k 'e s o
assert "camión" => k a m j 'o n
)mlr";

inline constexpr const char* kWholeLanguage =
    R"mlr(; Castilian Spanish: letters, words, phones, syllables, stress, durations
language es
read "…" as "..."
tier letters from text : a á b c d e é f g h i í ì î ï j k l m n ñ o ó p q r s t u ú v w x y ý ÿ z
     "0" 1 2 3 4 "." "," ":" ";" "?" "!" ¡ ¿
  join ­
  letters à â = a
  ignore "-" "\"" « »
  ignore other
  case kept
  expand [0-9]+([.][0-9]{3})*([,][0-9]+)? as spellout   ; numbers
  expand "Sr." as "señor"
  expand 117 as ciento diecisiete
  feature digit  = "0" 1 2 3 4
  feature front  = e é i í ì î
       ï
  feature pause  = "." "," ":" ";" "?" "!"
tier word spans letters
  word   = [letter]+
  weak   : a al con de
  field open number
tier phone : a e i o u j w p b t d k g tS f T s x jj B D G m n J N l L r rr
  feature manner : voc = a e i o u | glide = j w | stop = p b t d k g
  field stress number
tier syl
  field stress number
tier time ms
lexicon "es.lex" : word -> phone
show phone with ' before [stress=1]
show word by letters
show syl with ˈ before [stress=1] in ipa
ipa phone : tS = tʃ | T = θ
   | B = β
include "more.mlr"
block sounds : letters -> phone within word first
  r  -> rr / # _ | [n|l|s] _
  d  -> D / [-nasal !l] _
  n  -> N / _ (g|j|k|q) | _ c ![front|h]
  á -> a[stress=1] , é -> e[stress=1] , æ -> a e
  l -> l , h -> 0 , s|ç|ß -> s
  . -> 0
pattern cons    = [-voc -glide]
pattern nucleus = (onset)? [glide]? [voc]
block syllables : phone -> syl within word first
  [-voc]* [voc] [-voc]*? -> syl / _ (nucleus | #)
block endings : word each
  &<letters: (. !#word)* [vowel|n|s] #word> [word] := [open=1]
block stress : syl within word each leftward
  !in(word: [weak]) in(word: [open=1]) [stress=0] := [stress=1]
     / # [stress=0]* _ [stress=0] #
block pauses : letters -> time each
  "," -> 200
  ":"|";" -> 300
block lengths : syl each
  [stress=1] ~ 195% / _ <letters: [quiet]* [pause]> | _ <letters: [quiet]* !.>
  [stress=1] ~ 130% \ _ <letters: [quiet]* [pause]>
assert "sí" => tier syl: 's i
)mlr";

inline constexpr const char* kSpanishTree =
    R"mlr((tier letters TEXT : a á b c d e é f g h i í j k l m n ñ o ó p q r s t u ú ü v w x y z (feature vowel = a á e é i í o ó u ú ü) (feature front = e é i í) (feature nasal = m n ñ))
(tier word SPANS letters : (span word = [letter]{1,}) (words weak : el la de que))
(tier phone : a e i o u j w p b t d k g tS f T s x jj B D G m n J N l r rr (feature voc = a e i o u) (feature manner | stop = p b t d k g | fric = f T s x jj | glide = j w) (field stress))
(show phone before ' [stress=1])
(class A = a | e | o)
(block sounds letters->phone within word first (rule ch -> tS) (rule r -> rr / #_ | [(or n l s)]_) (rule rr -> rr) (rule qu -> k / _[front]) (rule gu -> G / [(not nasal)]_[front]) (rule gu -> g / _[front]) (rule c -> T / _[front]) (rule g -> x / _[front]) (rule b | v -> B / [(not nasal)]_) (rule n -> N / _(g | j | k | q | c ![(or front h)])) (rule i -> j / _(A | u) | A_) (rule x -> k s \ #_) (rule é -> e[stress=1]) (rule h ->) (rule x -> s) (rule c -> k) (rule r -> r))
(block stress phone within word each (rule !in(word: weak) [(and voc stress=0)] := [stress=1] / # [stress=0]{0,}_[(not voc)]{0,} [(and voc stress=0)] (n | s){0,1} #) (rule !in(word: weak) [(and voc stress=0)] := [stress=1] / # [stress=0]{0,}_[(not voc)]{0,} #))
(assert "queso" => {k 'e s o})
(assert "camión" => {k a m j 'o n})
)mlr";

inline constexpr const char* kWholeLanguageTree = R"mlr((language es)
(read "…" as "...")
(tier letters TEXT : a á b c d e é f g h i í ì î ï j k l m n ñ o ó p q r s t u ú v w x y ý ÿ z "0" 1 2 3 4 "." "," ":" ";" "?" "!" ¡ ¿ (join ­) (letters à â = a) (ignore "-" """ « ») (ignore OTHER) (case) (expand [0-9]+([.][0-9]{3})*([,][0-9]+)? as SPELLOUT) (expand "Sr." as "señor") (expand 117 as ciento diecisiete) (feature digit = "0" 1 2 3 4) (feature front = e é i í ì î ï) (feature pause = "." "," ":" ";" "?" "!"))
(tier word SPANS letters : (span word = [letter]{1,}) (words weak : a al con de) (field open))
(tier phone : a e i o u j w p b t d k g tS f T s x jj B D G m n J N l L r rr (feature manner | voc = a e i o u | glide = j w | stop = p b t d k g) (field stress))
(tier syl : (field stress))
(tier time MS :)
(lexicon "es.lex" word phone)
(show phone before ' [stress=1])
(show word BY letters)
(show syl before ˈ [stress=1] IPA)
(ipa phone tS=tʃ T=θ B=β)
(include "more.mlr")
(block sounds letters->phone within word first (rule r -> rr / #_ | [(or n l s)]_) (rule d -> D / [(and (not nasal) (not l))]_) (rule n -> N / _(g | j | k | q) | _c ![(or front h)]) (rule á -> a[stress=1]) (rule é -> e[stress=1]) (rule æ -> a e) (rule l -> l) (rule h ->) (rule s | ç | ß -> s) (rule . ->))
(pattern cons = [(and (not voc) (not glide))])
(pattern nucleus = (onset){0,1} [glide]{0,1} [voc])
(block syllables phone->syl within word first (rule [(not voc)]{0,} [voc] [(not voc)]{0,}? -> syl / _(nucleus | #)))
(block endings word each (rule &<letters: (. !#word){0,} [(or vowel n s)] #word> [word] := [open=1]))
(block stress syl within word each leftward (rule !in(word: weak) in(word: open=1) [stress=0] := [stress=1] / # [stress=0]{0,}_[stress=0] #))
(block pauses letters->time each (rule "," -> 200) (rule ":" | ";" -> 300))
(block lengths syl each (rule [stress=1] ~ 195 / _<letters: [quiet]{0,} [pause]> | _<letters: [quiet]{0,} !.>) (rule [stress=1] ~ 130 \ _<letters: [quiet]{0,} [pause]>))
(assert "sí" => syl: {'s i})
)mlr";

}  // namespace mlds::rules

#endif
