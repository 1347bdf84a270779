// Pages as the spreadsheet of an office suite (LibreOffice 7.4) has written them: of texts that
// this library had put on the clipboard, and of cells that were made there.
#pragma once

namespace orvane::tests {

/// The numbers, texts and nulls of pasted_texts, taken in from this library's page.
inline constexpr const char* kTextsTakenIn = R"page(<!DOCTYPE html>

<html>
<head>

	<meta http-equiv="content-type" content="text/html; charset=utf-8"/>
	<title></title>
	<meta name="generator" content="LibreOffice 7.4.7.2 (Linux)"/>
	<meta name="created" content="00:00:00"/>
	<meta name="changed" content="00:00:00"/>
	<meta name="" content=""/>

	<style type="text/css">
		body,div,table,thead,tbody,tfoot,tr,th,td,p { font-family:"DejaVu Sans"; font-size:x-small }
		a.comment-indicator:hover + comment { background:#ffd; position:absolute; display:block; border:1px solid black; padding:0.5em;  }
		a.comment-indicator { background:red; display:inline-block; border:1px solid black; width:0.5em; height:0.5em;  }
		comment { display:none;  }
	</style>

</head>

<body>
<table cellspacing="0" border="0">
	<colgroup span="3" width="214"></colgroup>
	<tr>
		<td height="17" align="right" sdval="1" sdnum="1033;"><font face="DejaVu Serif">1</font></td>
		<td align="left"><font face="DejaVu Serif"><br></font></td>
		<td align="left" sdnum="1033;0;@"><font face="DejaVu Serif"><br></font></td>
	</tr>
	<tr>
		<td height="17" align="right" sdval="2" sdnum="1033;"><font face="DejaVu Serif">2</font></td>
		<td align="left" sdnum="1033;0;@"><font face="DejaVu Serif"><br></font></td>
		<td align="left"><font face="DejaVu Serif"><br></font></td>
	</tr>
	<tr>
		<td height="17" align="right" sdval="3" sdnum="1033;"><font face="DejaVu Serif">3</font></td>
		<td align="left" sdnum="1033;0;@"><font face="DejaVu Serif">NULL</font></td>
		<td align="left" sdnum="1033;0;@"><font face="DejaVu Serif">null</font></td>
	</tr>
	<tr>
		<td height="17" align="right" sdval="4" sdnum="1033;"><font face="DejaVu Serif">4</font></td>
		<td align="left" sdnum="1033;0;@"><font face="DejaVu Serif">a b</font></td>
		<td align="left" sdnum="1033;0;@"><font face="DejaVu Serif"> </font></td>
	</tr>
	<tr>
		<td height="32" align="right" sdval="5" sdnum="1033;"><font face="DejaVu Serif">5</font></td>
		<td align="left" sdnum="1033;0;@"><font face="DejaVu Serif">two<br>lines</font></td>
		<td align="left" sdnum="1033;0;@"><font face="DejaVu Serif"><br></font></td>
	</tr>
	<tr>
		<td height="17" align="right" sdval="6" sdnum="1033;"><font face="DejaVu Serif">6</font></td>
		<td align="left" sdnum="1033;0;@"><font face="DejaVu Serif">&quot;quoted&quot;</font></td>
		<td align="left" sdnum="1033;0;@"><font face="DejaVu Serif">&quot;</font></td>
	</tr>
	<tr>
		<td height="17" align="right" sdval="7" sdnum="1033;"><font face="DejaVu Serif">7</font></td>
		<td align="left" sdnum="1033;0;@"><font face="DejaVu Serif">a &quot;b&quot; c</font></td>
		<td align="left" sdnum="1033;0;@"><font face="DejaVu Serif">&quot;&quot;</font></td>
	</tr>
	<tr>
		<td height="17" align="right" sdval="8" sdnum="1033;"><font face="DejaVu Serif">8</font></td>
		<td align="left" sdnum="1033;0;@"><font face="DejaVu Sans Mono">  two  blanks </font></td>
		<td align="left" sdnum="1033;0;@"><font face="DejaVu Sans Mono"> </font></td>
	</tr>
	<tr>
		<td height="17" align="right" sdval="9" sdnum="1033;"><font face="DejaVu Sans Mono">9</font></td>
		<td align="left" sdnum="1033;0;@"><font face="DejaVu Sans Mono">007</font></td>
		<td align="left" sdnum="1033;0;@"><font face="DejaVu Sans Mono">1e3</font></td>
	</tr>
	<tr>
		<td height="17" align="right" sdval="10" sdnum="1033;"><font face="DejaVu Sans Mono">10</font></td>
		<td align="left" sdnum="1033;0;@"><font face="DejaVu Sans Mono">-5</font></td>
		<td align="left" sdnum="1033;0;@"><font face="DejaVu Sans Mono">=1+1</font></td>
	</tr>
	<tr>
		<td height="17" align="right" sdval="11" sdnum="1033;"><font face="DejaVu Sans Mono">11</font></td>
		<td align="left" sdnum="1033;0;@"><font face="DejaVu Sans Mono">&lt;b&gt;&amp;amp;&lt;/b&gt;</font></td>
		<td align="left" sdnum="1033;0;@"><font face="DejaVu Sans Mono">&amp;nbsp;</font></td>
	</tr>
	<tr>
		<td height="17" align="right" sdval="12" sdnum="1033;"><font face="DejaVu Sans Mono">12</font></td>
		<td align="left" sdnum="1033;0;@"><font face="DejaVu Sans Mono">&nbsp;</font></td>
		<td align="left" sdnum="1033;0;@"><font face="DejaVu Sans Mono">ä€</font></td>
	</tr>
	<tr>
		<td height="17" align="right" sdval="13" sdnum="1033;"><font face="DejaVu Sans Mono">13</font></td>
		<td align="left" sdnum="1033;0;@"><font face="DejaVu Sans Mono">it's</font></td>
		<td align="left" sdnum="1033;0;@"><font face="DejaVu Sans Mono">True</font></td>
	</tr>
	<tr>
		<td height="17" align="right" sdval="14" sdnum="1033;"><font face="DejaVu Sans Mono">14</font></td>
		<td align="left" sdnum="1033;0;@"><font face="DejaVu Sans Mono">0x00</font></td>
		<td align="left" sdnum="1033;0;@"><font face="DejaVu Sans Mono">2026-01-02</font></td>
	</tr>
</table>
<!-- ************************************************************************** -->
</body>

</html>
)page";

/// Cells of a spreadsheet that counts in English.
inline constexpr const char* kEnglishCells = R"page(<table cellspacing="0" border="0">
	<colgroup width="69"></colgroup>
	<colgroup width="193"></colgroup>
	<colgroup width="150"></colgroup>
	<tr>
		<td height="17" align="left">a	b</td>
		<td align="right" sdval="1234.5" sdnum="1033;">1234.5</td>
		<td align="right" sdval="46173.5" sdnum="1033;0;YYYY-MM-DD HH:MM:SS">2026-05-31 12:00:00</td>
	</tr>
	<tr>
		<td height="32" align="left"><br></td>
		<td align="right" sdval="-0.05" sdnum="1033;0;0.00%">-5.00%</td>
		<td align="right" sdval="46173.5000014236" sdnum="1033;0;YYYY-MM-DD HH:MM:SS.000">2026-05-31 12:00:00.123</td>
	</tr>
	<tr>
		<td height="17" align="left">&nbsp;</td>
		<td align="right" sdval="1E-300" sdnum="1033;0;0.00E+00">1.00E-300</td>
		<td align="right" sdval="46173" sdnum="1033;0;YYYY-MM-DD">2026-05-31</td>
	</tr>
	<tr>
		<td height="62" align="left">two<br><br>lines<br></td>
		<td align="right" sdval="9.00719925474099E+015" sdnum="1033;">9.00719925474099E+015</td>
		<td align="right" sdval="0.521006944444444" sdnum="1033;0;HH:MM:SS AM/PM">12:30:15 PM</td>
	</tr>
	<tr>
		<td height="17" align="left">  &lt;b&gt; &amp; </td>
		<td align="right" sdval="1" sdnum="1033;0;BOOLEAN">TRUE</td>
		<td align="left"><br></td>
	</tr>
</table>
<!-- ************************************************************************** -->
</body>

</html>
)page";
/// Their text, with quotes where a cell has tabs or line breaks.
inline constexpr const char* kEnglishCellsText =
    "\"a\tb\"\t1234.5\t2026-05-31 12:00:00\n"
    "\"\n"
    "\"\t-5%\t2026-05-31 12:00:00.123\n"
    "\u00a0\t1E-300\t2026-05-31\n"
    "\"two\n"
    "\n"
    "lines\n"
    "\"\t9.00719925474099E+015\t12:30:15 PM\n"
    "  <b> & \tTRUE\t\n";

/// The same in German.
inline constexpr const char* kGermanCells = R"page(<table cellspacing="0" border="0">
	<colgroup width="69"></colgroup>
	<colgroup width="197"></colgroup>
	<colgroup width="150"></colgroup>
	<tr>
		<td height="17" align="left">a	b</td>
		<td align="right" sdval="1234,5" sdnum="1031;">1234,5</td>
		<td align="right" sdval="46173,5" sdnum="1031;0;JJJJ-MM-TT HH:MM:SS">2026-05-31 12:00:00</td>
	</tr>
	<tr>
		<td height="32" align="left"><br></td>
		<td align="right" sdval="-0,05" sdnum="1031;0;0,00&quot;&nbsp;&quot;%">-5,00&nbsp;%</td>
		<td align="right" sdval="46173,5000014236" sdnum="1031;0;JJJJ-MM-TT HH:MM:SS,000">2026-05-31 12:00:00,123</td>
	</tr>
	<tr>
		<td height="17" align="left">&nbsp;</td>
		<td align="right" sdval="1E-300" sdnum="1031;0;0,00E+00">1,00E-300</td>
		<td align="right" sdval="46173" sdnum="1031;0;JJJJ-MM-TT">2026-05-31</td>
	</tr>
	<tr>
		<td height="62" align="left">two<br><br>lines<br></td>
		<td align="right" sdval="9,00719925474099E+015" sdnum="1031;">9,00719925474099E+015</td>
		<td align="right" sdval="0,521006944444444" sdnum="1031;0;HH:MM:SS AM/PM">12:30:15 nachm.</td>
	</tr>
	<tr>
		<td height="17" align="left">  &lt;b&gt; &amp; </td>
		<td align="right" sdval="1" sdnum="1031;0;LOGISCH">WAHR</td>
		<td align="left"><br></td>
	</tr>
</table>
<!-- ************************************************************************** -->
</body>

</html>
)page";

}  // namespace orvane::tests
