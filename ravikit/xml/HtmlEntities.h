#pragma once

#include <array>
#include <string_view>

// Written by tools/html_entities.py; not to be edited.

namespace ravikit {

/// An entity of HTML 4 that a deck cannot use by its name.
struct HtmlName {
    std::u16string_view name;
    char16_t character;
};

/// In the order of their names.
inline constexpr std::array<HtmlName, 252> htmlNames = {{
    {u"AElig", 0x00C6},   {u"Aacute", 0x00C1},   {u"Acirc", 0x00C2},   {u"Agrave", 0x00C0},
    {u"Alpha", 0x0391},   {u"Aring", 0x00C5},    {u"Atilde", 0x00C3},  {u"Auml", 0x00C4},
    {u"Beta", 0x0392},    {u"Ccedil", 0x00C7},   {u"Chi", 0x03A7},     {u"Dagger", 0x2021},
    {u"Delta", 0x0394},   {u"ETH", 0x00D0},      {u"Eacute", 0x00C9},  {u"Ecirc", 0x00CA},
    {u"Egrave", 0x00C8},  {u"Epsilon", 0x0395},  {u"Eta", 0x0397},     {u"Euml", 0x00CB},
    {u"Gamma", 0x0393},   {u"Iacute", 0x00CD},   {u"Icirc", 0x00CE},   {u"Igrave", 0x00CC},
    {u"Iota", 0x0399},    {u"Iuml", 0x00CF},     {u"Kappa", 0x039A},   {u"Lambda", 0x039B},
    {u"Mu", 0x039C},      {u"Ntilde", 0x00D1},   {u"Nu", 0x039D},      {u"OElig", 0x0152},
    {u"Oacute", 0x00D3},  {u"Ocirc", 0x00D4},    {u"Ograve", 0x00D2},  {u"Omega", 0x03A9},
    {u"Omicron", 0x039F}, {u"Oslash", 0x00D8},   {u"Otilde", 0x00D5},  {u"Ouml", 0x00D6},
    {u"Phi", 0x03A6},     {u"Pi", 0x03A0},       {u"Prime", 0x2033},   {u"Psi", 0x03A8},
    {u"Rho", 0x03A1},     {u"Scaron", 0x0160},   {u"Sigma", 0x03A3},   {u"THORN", 0x00DE},
    {u"Tau", 0x03A4},     {u"Theta", 0x0398},    {u"Uacute", 0x00DA},  {u"Ucirc", 0x00DB},
    {u"Ugrave", 0x00D9},  {u"Upsilon", 0x03A5},  {u"Uuml", 0x00DC},    {u"Xi", 0x039E},
    {u"Yacute", 0x00DD},  {u"Yuml", 0x0178},     {u"Zeta", 0x0396},    {u"aacute", 0x00E1},
    {u"acirc", 0x00E2},   {u"acute", 0x00B4},    {u"aelig", 0x00E6},   {u"agrave", 0x00E0},
    {u"alefsym", 0x2135}, {u"alpha", 0x03B1},    {u"amp", 0x0026},     {u"and", 0x2227},
    {u"ang", 0x2220},     {u"aring", 0x00E5},    {u"asymp", 0x2248},   {u"atilde", 0x00E3},
    {u"auml", 0x00E4},    {u"bdquo", 0x201E},    {u"beta", 0x03B2},    {u"brvbar", 0x00A6},
    {u"bull", 0x2022},    {u"cap", 0x2229},      {u"ccedil", 0x00E7},  {u"cedil", 0x00B8},
    {u"cent", 0x00A2},    {u"chi", 0x03C7},      {u"circ", 0x02C6},    {u"clubs", 0x2663},
    {u"cong", 0x2245},    {u"copy", 0x00A9},     {u"crarr", 0x21B5},   {u"cup", 0x222A},
    {u"curren", 0x00A4},  {u"dArr", 0x21D3},     {u"dagger", 0x2020},  {u"darr", 0x2193},
    {u"deg", 0x00B0},     {u"delta", 0x03B4},    {u"diams", 0x2666},   {u"divide", 0x00F7},
    {u"eacute", 0x00E9},  {u"ecirc", 0x00EA},    {u"egrave", 0x00E8},  {u"empty", 0x2205},
    {u"emsp", 0x2003},    {u"ensp", 0x2002},     {u"epsilon", 0x03B5}, {u"equiv", 0x2261},
    {u"eta", 0x03B7},     {u"eth", 0x00F0},      {u"euml", 0x00EB},    {u"euro", 0x20AC},
    {u"exist", 0x2203},   {u"fnof", 0x0192},     {u"forall", 0x2200},  {u"frac12", 0x00BD},
    {u"frac14", 0x00BC},  {u"frac34", 0x00BE},   {u"frasl", 0x2044},   {u"gamma", 0x03B3},
    {u"ge", 0x2265},      {u"gt", 0x003E},       {u"hArr", 0x21D4},    {u"harr", 0x2194},
    {u"hearts", 0x2665},  {u"hellip", 0x2026},   {u"iacute", 0x00ED},  {u"icirc", 0x00EE},
    {u"iexcl", 0x00A1},   {u"igrave", 0x00EC},   {u"image", 0x2111},   {u"infin", 0x221E},
    {u"int", 0x222B},     {u"iota", 0x03B9},     {u"iquest", 0x00BF},  {u"isin", 0x2208},
    {u"iuml", 0x00EF},    {u"kappa", 0x03BA},    {u"lArr", 0x21D0},    {u"lambda", 0x03BB},
    {u"lang", 0x2329},    {u"laquo", 0x00AB},    {u"larr", 0x2190},    {u"lceil", 0x2308},
    {u"ldquo", 0x201C},   {u"le", 0x2264},       {u"lfloor", 0x230A},  {u"lowast", 0x2217},
    {u"loz", 0x25CA},     {u"lrm", 0x200E},      {u"lsaquo", 0x2039},  {u"lsquo", 0x2018},
    {u"lt", 0x003C},      {u"macr", 0x00AF},     {u"mdash", 0x2014},   {u"micro", 0x00B5},
    {u"middot", 0x00B7},  {u"minus", 0x2212},    {u"mu", 0x03BC},      {u"nabla", 0x2207},
    {u"nbsp", 0x00A0},    {u"ndash", 0x2013},    {u"ne", 0x2260},      {u"ni", 0x220B},
    {u"not", 0x00AC},     {u"notin", 0x2209},    {u"nsub", 0x2284},    {u"ntilde", 0x00F1},
    {u"nu", 0x03BD},      {u"oacute", 0x00F3},   {u"ocirc", 0x00F4},   {u"oelig", 0x0153},
    {u"ograve", 0x00F2},  {u"oline", 0x203E},    {u"omega", 0x03C9},   {u"omicron", 0x03BF},
    {u"oplus", 0x2295},   {u"or", 0x2228},       {u"ordf", 0x00AA},    {u"ordm", 0x00BA},
    {u"oslash", 0x00F8},  {u"otilde", 0x00F5},   {u"otimes", 0x2297},  {u"ouml", 0x00F6},
    {u"para", 0x00B6},    {u"part", 0x2202},     {u"permil", 0x2030},  {u"perp", 0x22A5},
    {u"phi", 0x03C6},     {u"pi", 0x03C0},       {u"piv", 0x03D6},     {u"plusmn", 0x00B1},
    {u"pound", 0x00A3},   {u"prime", 0x2032},    {u"prod", 0x220F},    {u"prop", 0x221D},
    {u"psi", 0x03C8},     {u"quot", 0x0022},     {u"rArr", 0x21D2},    {u"radic", 0x221A},
    {u"rang", 0x232A},    {u"raquo", 0x00BB},    {u"rarr", 0x2192},    {u"rceil", 0x2309},
    {u"rdquo", 0x201D},   {u"real", 0x211C},     {u"reg", 0x00AE},     {u"rfloor", 0x230B},
    {u"rho", 0x03C1},     {u"rlm", 0x200F},      {u"rsaquo", 0x203A},  {u"rsquo", 0x2019},
    {u"sbquo", 0x201A},   {u"scaron", 0x0161},   {u"sdot", 0x22C5},    {u"sect", 0x00A7},
    {u"shy", 0x00AD},     {u"sigma", 0x03C3},    {u"sigmaf", 0x03C2},  {u"sim", 0x223C},
    {u"spades", 0x2660},  {u"sub", 0x2282},      {u"sube", 0x2286},    {u"sum", 0x2211},
    {u"sup", 0x2283},     {u"sup1", 0x00B9},     {u"sup2", 0x00B2},    {u"sup3", 0x00B3},
    {u"supe", 0x2287},    {u"szlig", 0x00DF},    {u"tau", 0x03C4},     {u"there4", 0x2234},
    {u"theta", 0x03B8},   {u"thetasym", 0x03D1}, {u"thinsp", 0x2009},  {u"thorn", 0x00FE},
    {u"tilde", 0x02DC},   {u"times", 0x00D7},    {u"trade", 0x2122},   {u"uArr", 0x21D1},
    {u"uacute", 0x00FA},  {u"uarr", 0x2191},     {u"ucirc", 0x00FB},   {u"ugrave", 0x00F9},
    {u"uml", 0x00A8},     {u"upsih", 0x03D2},    {u"upsilon", 0x03C5}, {u"uuml", 0x00FC},
    {u"weierp", 0x2118},  {u"xi", 0x03BE},       {u"yacute", 0x00FD},  {u"yen", 0x00A5},
    {u"yuml", 0x00FF},    {u"zeta", 0x03B6},     {u"zwj", 0x200D},     {u"zwnj", 0x200C},
}};

} // namespace ravikit
