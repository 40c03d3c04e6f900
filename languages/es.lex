; Words of Spanish texts that the rules of es.mlr cannot know: loans, names, acronyms.
; b d g n stand here as in a dictionary: what neighbours do to them is done afterwards.

; ---- x as in Mexico, and other spellings kept for old times' sake ----
xalapa	x a l 'a p a
xavier	x a b j 'e r
xochimilco	s o tS i m 'i l k o
tlaxcala	t l a k s k 'a l a
tuxtla	t 'u s t l a
taxco	t 'a s k o
mexía	m e x 'i a
axarquía	a x a r k 'i a
xixona	x i x 'o n a
xàtiva	tS 'a t i b a
xátiva	tS 'a t i b a
xunta	s 'u n t a
xacobeo	s a k o b 'e o
rexurdimento	rr e s u r d i m 'e n t o

; ---- music, shows, sport ----
ballet	b a l 'e
ballets	b a l 'e s
blues	b l 'u s
boy	b 'o j
break	b r 'e k
bowling	b 'o l i n
boxes	b 'o k s e s
cricket	k r 'i k e t
dancing	d 'a n s i n
discjockey	d i s k j 'o k e j
jockey	j 'o k e j
fairplay	f e r p l 'e j
glamour	g l a m 'u r
groove	g r 'u b
hit	x 'i t
hits	x 'i t s
hockey	x 'o k e j
hooligan	'u l i g a n
hooligans	'u l i g a n s
jazz	jj 'a s
jogging	jj 'o g i n
judo	jj 'u d o
judoka	jj u d 'o k a
kickboxing	k i k b 'o k s i n
penalty	p e n 'a l t i
piercing	p 'i r s i n
play	p l 'e j
playboy	p l e j b 'o j
playback	p l 'e j b a k
playoff	p l e j 'o f
playstation	p l e j s t 'e j s o n
puzzle	p 'u T l e
rafting	rr 'a f t i n
ranking	rr 'a n k i n
ring	rr 'i n
rock	rr 'o k
rugby	rr 'u g b i
running	rr 'a n i n
show	S 'o w
shows	S 'o w s
single	s 'i n g e l
sketch	e s k 'e tS
skate	e s k 'e j t
skater	e s k 'e j t e r
sound	s 'a w n d
soul	s 'o w l
speech	e s p 'i tS
sprint	e s p r 'i n t
surf	s 'u r f
surfing	s 'u r f i n
swing	s w 'i n
thriller	T r 'i l e r
trailer	t r 'a j l e r
western	w 'e s t e r n
windsurf	w 'i n d s u r f
hip	x 'i p
punk	p 'a n k
heavy	x 'e b i
country	k 'a n t r i
reggae	rr 'e g e
reggaetón	rr e g e t 'o n
gospel	g 'o s p e l
beat	b 'i t
reality	rr e 'a l i t i
realities	rr e 'a l i t i s
casting	k 'a s t i n
peeling	p 'i l i n
lifting	l 'i f t i n

; ---- computers and the office ----
apple	'a p e l
app	'a p
apps	'a p s
backup	b 'a k a p
bit	b 'i t
blog	b l 'o g
blogger	b l 'o g e r
bluetooth	b l 'u t u T
bug	b 'a g
byte	b 'a j t
bytes	b 'a j t s
click	k l 'i k
cookie	k 'u k i
cookies	k 'u k i s
copyright	k o p i rr 'a j t
email	'i m e j l
emails	'i m e j l s
facebook	f 'e j s b u k
feedback	f 'i d b a k
firewall	f 'a j e r w o l
freelance	f r 'i l a n s
gigabyte	x i g a b 'a j t
google	g 'u g e l
hacker	x 'a k e r
hackers	x 'a k e r s
hardware	x 'a r w e r
hashtag	x 'a s t a g
holding	x 'o l d i n
instagram	'i n s t a g r a m
internet	i n t e r n 'e t
intranet	i n t r a n 'e t
iphone	'a j f o n
laptop	l 'a p t o p
leasing	l 'i s i n
link	l 'i n k
links	l 'i n k s
linux	l 'i n u k s
like	l 'a j k
likes	l 'a j k s
malware	m 'a l w e r
manager	m 'a n a jj e r
marketing	m 'a r k e t i n
márketing	m 'a r k e t i n
megabyte	m e g a b 'a j t
microsoft	m 'a j k r o s o f t
mouse	m 'a w s
netflix	n 'e t f l i k s
offline	'o f l a j n
online	'o n l a j n
outlet	'a w t l e t
outsourcing	a w t s 'o r s i n
phishing	f 'i S i n
podcast	p 'o d k a s t
post	p 'o s t
router	rr 'u t e r
scanner	e s k 'a n e r
selfie	s 'e l f i
selfies	s 'e l f i s
shareware	S 'e r w e r
site	s 'a j t
skype	e s k 'a j p
smartphone	e s m 'a r t f o n
software	s 'o f w e r
spyware	e s p 'a j w e r
startup	e s t 'a r t a p
streaming	e s t r 'i m i n
tablet	t 'a b l e t
tablets	t 'a b l e t s
twitter	t w 'i t e r
tuit	t w 'i t
update	'a p d e j t
web	w 'e b
whatsapp	w 'a s a p
wasap	w 'a s a p
wifi	w 'i f i
windows	w 'i n d o w s
youtube	jj u t 'u b
youtuber	jj u t 'u b e r
youtubers	jj u t 'u b e r s

; ---- food and clothes ----
bacon	b 'e j k o n
baguette	b a g 'e t
barman	b 'a r m a n
beige	b 'e j s
blazer	b l 'e j s e r
body	b 'o d i
boutique	b u t 'i k
boutiques	b u t 'i k s
brandy	b r 'a n d i
brie	b r 'i
brioche	b r i 'o tS
broccoli	b r 'o k o l i
brunch	b r 'a n tS
buffet	b u f 'e
bufet	b u f 'e t
burger	b 'u r g e r
camembert	k a m e m b 'e r
capuccino	k a p u tS 'i n o
cappuccino	k a p u tS 'i n o
catering	k 'a t e r i n
chalet	tS a l 'e
champagne	tS a m p 'a n
champignon	tS a m p i J 'o n
cheddar	tS 'e d a r
chef	tS 'e f
chefs	tS 'e f s
chutney	tS 'a t n e j
cocktail	k 'o k t e l
cognac	k o J 'a k
collage	k o l 'a S
crepe	k r 'e p
crepes	k r 'e p s
croissant	k r w a s 'a n
croissants	k r w a s 'a n s
curry	k 'u rr i
donut	d 'o n u t
espresso	e s p r 'e s o
foie	f w 'a
fondue	f o n d 'u
gin	jj 'i n
gourmet	g u r m 'e
gruyer	g r u jj 'e r
gruyère	g r u jj 'e r
hamster	x 'a m s t e r
hámster	x 'a m s t e r
ketchup	k 'e tS u p
lasagna	l a s 'a J a
light	l 'a j t
maître	m 'e t r e
mousse	m 'u s
mozzarella	m o t s a r 'e l a
muffin	m 'a f i n
nugget	n 'a g e t
pizza	p 'i t s a
pizzas	p 'i t s a s
pizzería	p i t s e r 'i a
pizzerías	p i t s e r 'i a s
quiche	k 'i S
risotto	rr i s 'o t o
roquefort	rr o k e f 'o r
sandwich	s 'a n g w i tS
sándwich	s 'a n g w i tS
sándwiches	s 'a n g w i tS e s
sherry	tS 'e rr i
short	S 'o r t
shorts	S 'o r t s
smoking	e s m 'o k i n
soufflé	s u f l 'e
sushi	s 'u S i
tupper	t 'a p e r
vichy	b i tS 'i
vodka	b 'o d k a
whisky	w 'i s k i
whiskey	w 'i s k i
yogur	jj o g 'u r
yogurt	jj o g 'u r
yogures	jj o g 'u r e s
jean	jj 'i n
jeans	jj 'i n s
jersey	x e r s 'e j
lycra	l 'i k r a
tweed	t w 'i d
foulard	f u l 'a r

; ---- town, travel, society ----
affaire	a f 'e r
airbag	'e r b a g
amateur	a m a t 'e r
apartheid	a p a r t 'e j d
argot	a r g 'o
atelier	a t e l j 'e
autostop	a w t o e s t 'o p
baby	b 'e j b i
boom	b 'u m
boulevard	b u l e b 'a r
camping	k 'a m p i n
campings	k 'a m p i n s
chance	tS 'a n s e
charter	tS 'a r t e r
chárter	tS 'a r t e r
clown	k l 'o w n
clubs	k l 'u b s
crash	k r 'a S
déjà	d e jj 'a
dossier	d o s j 'e r
dumping	d 'u m p i n
élite	'e l i t e
elite	e l 'i t e
ferry	f 'e rr i
flash	f l 'a S
footing	f 'u t i n
garage	g a r 'a S
gángster	g 'a n s t e r
gángsteres	g 'a n s t e r e s
gay	g 'e j
gays	g 'e j s
geisha	g 'e j S a
gentleman	jj 'e n t e l m a n
geyser	x 'e j s e r
ghetto	g 'e t o
gigoló	jj i g o l 'o
gym	jj 'i m
hall	x 'o l
hachís	x a tS 'i s
haikú	x a j k 'u
handicap	x 'a n d i k a p
hándicap	x 'a n d i k a p
happy	x 'a p i
harem	a r 'e m
hindi	x 'i n d i
hippie	x 'i p i
hippies	x 'i p i s
hippy	x 'i p i
hobby	x 'o b i
hobbies	x 'o b i s
hostess	x 'o s t e s
iceberg	i T e b 'e r g
impasse	i m p 'a s
jacuzzi	jj a k 'u s i
jeep	jj 'i p
jet	jj 'e t
joystick	jj 'o j s t i k
junior	jj 'u n j o r
júnior	jj 'u n j o r
káiser	k 'a j s e r
kitsch	k 'i tS
leitmotiv	l a j t m o t 'i b
lady	l 'e j d i
lobby	l 'o b i
lobbies	l 'o b i s
look	l 'u k
mailing	m 'e j l i n
miss	m 'i s
míster	m 'i s t e r
nazi	n 'a T i
nazis	n 'a T i s
nylon	n 'a j l o n
nailon	n 'a j l o n
overbooking	o b e r b 'u k i n
paparazzi	p a p a r 'a t s i
parking	p 'a r k i n
parkings	p 'a r k i n s
party	p 'a r t i
poni	p 'o n i
pony	p 'o n i
pub	p 'a b
pubs	p 'a b s
reich	rr 'a j x
rouge	rr 'u S
sauna	s 'a w n a
scooter	e s k 'u t e r
sex	s 'e k s
sexy	s 'e k s i
sheriff	tS 'e r i f
shock	S 'o k
shopping	S 'o p i n
sir	s 'e r
spa	e s p 'a
speaker	e s p 'i k e r
spray	e s p r 'a j
standard	e s t 'a n d a r
standing	e s t 'a n d i n
status	e s t 'a t u s
stress	e s t r 'e s
ticket	t 'i k e t
tickets	t 'i k e t s
topless	t 'o p l e s
tour	t 'u r
tours	t 'u r s
tournée	t u r n 'e
vedette	b e d 'e t
versus	b 'e r s u s
váter	b 'a t e r
water	b 'a t e r
wáter	b 'a t e r
weekend	w 'i k e n d
yuppie	jj 'u p i
yuppies	jj 'u p i s
zapping	T 'a p i n
zoom	T 'u m
kitesurf	k 'a j t s u r f
attrezzo	a t r 'e T o
allegro	a l 'e g r o
chelo	tS 'e l o
cello	tS 'e l o
ciao	tS 'a w
paparazzo	p a p a r 'a t s o
scherzo	e s k 'e r t s o
gnocchi	J 'o k i
ñoquis	J 'o k i s
mademoiselle	m a d m w a s 'e l
madame	m a d 'a m
monsieur	m e s j 'e
merci	m e r s 'i
voyeur	b w a jj 'e r
chauffeur	tS o f 'e r
toilette	t w a l 'e t
debut	d e b 'u t
début	d e b 'u
ragout	rr a g 'u
souvenir	s u b e n 'i r
vermut	b e r m 'u t

; ---- names of people ----
bach	b 'a x
balzac	b a l s 'a k
baudelaire	b o d e l 'e r
beatles	b 'i t e l s
beauvoir	b o b w 'a r
beckham	b 'e k a m
beethoven	b 'e t o b e n
berlioz	b e r l j 'o s
bill	b 'i l
botticelli	b o t i tS 'e l i
bush	b 'u S
byron	b 'a j r o n
camus	k a m 'u
charles	tS 'a r l e s
charlie	tS 'a r l i
chaplin	tS 'a p l i n
chopin	tS o p 'e n
churchill	tS 'u r tS i l
clinton	k l 'i n t o n
cohen	k 'o e n
comte	k 'o m t
curie	k u r 'i
darwin	d 'a r w i n
david	d a b 'i d
debussy	d e b u s 'i
dickens	d 'i k e n s
diderot	d i d e r 'o
disney	d 'i s n e j
dumas	d u m 'a
einstein	'a j n s t a j n
eiffel	'e j f e l
elisabeth	e l 'i s a b e T
elizabeth	e l 'i s a b e T
engels	'e n g e l s
flaubert	f l o b 'e r
foucault	f u k 'o
freud	f r 'o j d
gandhi	g 'a n d i
george	jj 'o r jj
goethe	g 'e t e
gogh	g 'o g
greenpeace	g r i n p 'i s
handel	x 'e n d e l
hegel	x 'e g e l
heidegger	x 'a j d e g e r
heine	x 'a j n e
hemingway	x 'e m i n g w e j
henry	x 'e n rr i
hitchcock	x 'i tS k o k
hitler	x 'i t l e r
hollywood	x 'o l i w u d
jackson	jj 'a k s o n
jacques	jj 'a k
james	jj 'e j m s
jeffrey	jj 'e f r i
jennifer	jj 'e n i f e r
jesse	jj 'e s i
jessica	jj 'e s i k a
jim	jj 'i m
jimmy	jj 'i m i
joe	jj 'o w
john	jj 'o n
johnson	jj 'o n s o n
jonathan	jj 'o n a t a n
joyce	jj 'o j s
jung	jj 'u n g
kafka	k 'a f k a
kant	k 'a n t
kennedy	k 'e n e d i
kevin	k 'e b i n
keynes	k 'e j n s
lennon	l 'e n o n
lenin	l 'e n i n
louis	l u 'i s
marx	m 'a r k s
mendelssohn	m 'e n d e l s o n
michael	m 'a j k e l
michelle	m i S 'e l
mitterrand	m i t e rr 'a n
molière	m o l j 'e r
monet	m o n 'e
monroe	m o n rr 'o
montesquieu	m o n t e s k j 'e
mozart	m 'o t s a r t
müller	m 'u l e r
newton	n j 'u t o n
nietzsche	n 'i tS e
nixon	n 'i k s o n
pasteur	p a s t 'e r
peugeot	p e jj 'o
proust	p r 'u s t
puccini	p u tS 'i n i
ravel	rr a b 'e l
reagan	rr 'e g a n
rembrandt	rr 'e m b r a n t
renault	rr e n 'o
renoir	rr e n w 'a r
rimbaud	rr i m b 'o
robespierre	rr o b e s p j 'e rr
rockefeller	rr o k e f 'e l e r
rodin	rr o d 'e n
rolex	rr 'o l e k s
rousseau	rr u s 'o
sartre	s 'a r t r e
schiller	S 'i l e r
schopenhauer	S o p e n 'a w e r
schubert	S 'u b e r t
schumann	S 'u m a n
shakespeare	S 'e k s p i r
shakespeariano	S e k s p i r j 'a n o
shaw	S 'o
sherlock	S 'e r l o k
smith	e s m 'i T
spielberg	e s p 'i l b e r g
stalin	e s t 'a l i n
steve	e s t 'i b
stephen	e s t 'i b e n
steven	e s t 'i b e n
strauss	e s t r 'a w s
stravinski	e s t r a b 'i n s k i
thatcher	t 'a tS e r
thomas	t 'o m a s
toulouse	t u l 'u s
trump	t r 'a m p
versace	b e r s 'a tS e
volkswagen	b o l k s b 'a g e n
voltaire	b o l t 'e r
wagner	b 'a g n e r
wagneriano	b a g n e r j 'a n o
watt	b 'a t
weber	b 'e b e r
wilde	w 'a j l d
william	w 'i l j a m
williams	w 'i l j a m s
wilson	w 'i l s o n
wittgenstein	b 'i t g e n s t a j n
woody	w 'u d i
zidane	T i d 'a n
sarkozy	s a r k o s 'i
merkel	m 'e r k e l
macron	m a k r 'o n
putin	p 'u t i n
schröder	S r 'e d e r
guggenheim	g 'u g e n x a j m
hermès	e r m 'e s
chanel	tS a n 'e l
dior	d j 'o r
cartier	k a r t j 'e
puigdemont	p u tS d e m 'o n
puig	p 'u tS
llull	jj 'u l
roig	rr 'o tS
reig	rr 'e tS
montjuic	m o n j w 'i k

; ---- names of places ----
baltimore	b a l t i m 'o r
beirut	b e j r 'u t
birmingham	b 'i r m i n g a n
bordeaux	b o r d 'o
boston	b 'o s t o n
broadway	b r 'o d w e j
brooklyn	b r 'u k l i n
cambridge	k 'a m b r i tS
cannes	k 'a n
chicago	tS i k 'a g o
cleveland	k l 'i b l a n d
connecticut	k o n 'e t i k u t
dallas	d 'a l a s
denver	d 'e m b e r
detroit	d e t r 'o j t
frankfurt	f r 'a n k f u r t
girona	jj i r 'o n a
harlem	x 'a r l e m
harvard	x 'a r b a r d
hawái	x a w 'a j
hawaii	x a w 'a j
haway	x a w 'a j
heidelberg	x 'a j d e l b e r g
helsinki	x e l s 'i n k i
hiroshima	x i r o S 'i m a
houston	x j 'u s t o n
illinois	i l i n 'o j
kansas	k 'a n s a s
liverpool	l 'i b e r p u l
lleida	jj 'e j d a
manchester	m 'a n tS e s t e r
manhattan	m a n x 'a t a n
massachusetts	m a s a tS 'u s e t s
miami	m j 'a m i
michigan	m 'i tS i g a n
milwaukee	m i l w 'o k i
montreal	m o n t r e 'a l
múnich	m 'u n i k
orleans	o r l e 'a n s
ottawa	'o t a w a
oxford	'o k s f o r d
oklahoma	o k l a x 'o m a
philadelphia	f i l a d 'e l f j a
reikiavik	rr e j k j a b 'i k
sahara	s a x 'a r a
sáhara	s 'a x a r a
seattle	s i 'a t e l
shanghái	S a n g 'a j
shanghai	S a n g 'a j
sidney	s 'i d n e j
sídney	s 'i d n e j
stuttgart	e s t 'u t g a r t
sydney	s 'i d n e j
utah	j 'u t a
washington	w 'a s i n t o n
westminster	w e s m 'i n s t e r
wimbledon	w 'i m b e l d o n
wisconsin	w i s k 'o n s i n
wyoming	w a j 'o m i n
york	jj 'o r k
zúrich	T 'u r i k

; ---- acronyms that are spelt although they have a vowel, or read against the rules of stress ----
adn	a d e 'e n e
arn	a e rr e 'e n e
bbc	b e b e T 'e
cnn	T e e n e 'e n e
bce	b e T e 'e
ccoo	k o m i s j o n e s o b r 'e r a s
ibm	i b e 'e m e
itv	i t e 'u b e
mba	e m e b e 'a
npi	e n e p e 'i
rne	e rr e e n e 'e
tve	t e u b e 'e
dni	d e e n e 'i
eeuu	e s t a d o s u n 'i d o s
erc	e e rr e T 'e
fbi	e f e b e 'i
fmi	e f e m e 'i
ibex	'i b e k s
irpf	i e rr e p e 'e f e
isbn	i e s e b e 'e n e
lgtbi	e l e x e t e b e 'i
nba	e n e b e 'a
ocde	o T e d e 'e
oms	o e m e 'e s e
ong	o e n e x 'e
ongs	o e n e x 'e s
ok	o k 'e j
otan	o t 'a n
pib	p 'i b
pnv	p e e n e 'u b e
psoe	p e s 'o e
rtve	e rr e t e u b e 'e
sms	e s e e m e 'e s e
tic	t 'i k
ue	u 'e
ugt	u x e t 'e
unicef	u n i T 'e f
urss	'u rr s
usb	u e s e b 'e
wc	u b e d o b l e T 'e
vih	u b e i 'a tS e

; ---- interjections ----
brr	b r
brrr	b r
bah	b 'a
eh	'e
hm	m
hmm	m
mmm	m
psst	p s
pst	p s
shh	S
shhh	S
sh	S
ssh	S
