<?xml version="1.0" encoding="UTF-8"?>
<!-- The page of a deck, as the plain view shows it, but for the marks and the source that the page
     carries for the way back: the same elements, attributes and texts. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output method="html" encoding="UTF-8" indent="no"/>
  <xsl:strip-space elements="wml card table tr select optgroup"/>

  <xsl:template match="wml">
    <div class="deck"><xsl:apply-templates/></div>
  </xsl:template>

  <xsl:template match="card">
    <div class="card" style="border:1px solid #888;margin:4px;padding:4px">
      <img alt="" data-room="" style="display:block;width:1px;height:1px"/>
      <h2 contenteditable="false">
        <span contenteditable="true" data-text="title"><xsl:value-of select="@title"/></span>
      </h2>
      <xsl:apply-templates/>
    </div>
  </xsl:template>

  <xsl:template match="p">
    <p>
      <xsl:call-template name="nowrap"/>
      <xsl:call-template name="align"/>
      <xsl:apply-templates/>
    </p>
  </xsl:template>

  <!-- A paragraph of HTML ends at a block: its inline content stands in paragraphs between them. -->
  <xsl:template match="p[table or fieldset or pre]">
    <div>
      <xsl:call-template name="nowrap"/>
      <xsl:for-each select="node()">
        <xsl:variable name="ahead" select="preceding-sibling::node()[1]"/>
        <xsl:choose>
          <xsl:when test="self::table or self::fieldset or self::pre">
            <xsl:apply-templates select="."/>
          </xsl:when>
          <xsl:when test="not($ahead) or $ahead[self::table or self::fieldset or self::pre]">
            <xsl:variable name="run"><xsl:apply-templates select="." mode="run"/></xsl:variable>
            <xsl:if test="normalize-space($run) != ''">
              <p><xsl:call-template name="align"/><xsl:copy-of select="$run"/></p>
            </xsl:if>
          </xsl:when>
        </xsl:choose>
      </xsl:for-each>
    </div>
  </xsl:template>

  <xsl:template match="node()" mode="run">
    <xsl:apply-templates select="."/>
    <xsl:apply-templates mode="run" select="following-sibling::node()[1]
                                            [not(self::table or self::fieldset or self::pre)]"/>
  </xsl:template>

  <xsl:template name="nowrap">
    <xsl:if test="@mode = 'nowrap'"><xsl:attribute name="style">white-space:nowrap</xsl:attribute></xsl:if>
  </xsl:template>
  <xsl:template name="align">
    <xsl:variable name="paragraph" select="ancestor-or-self::p[1]"/>
    <xsl:if test="$paragraph/@align">
      <xsl:attribute name="align"><xsl:value-of select="$paragraph/@align"/></xsl:attribute>
    </xsl:if>
  </xsl:template>

  <xsl:template match="pre"><pre><xsl:apply-templates/></pre></xsl:template>
  <xsl:template match="b"><b><xsl:apply-templates/></b></xsl:template>
  <xsl:template match="i"><i><xsl:apply-templates/></i></xsl:template>
  <xsl:template match="u"><u><xsl:apply-templates/></u></xsl:template>
  <xsl:template match="em"><em><xsl:apply-templates/></em></xsl:template>
  <xsl:template match="strong"><strong><xsl:apply-templates/></strong></xsl:template>
  <xsl:template match="big"><big><xsl:apply-templates/></big></xsl:template>
  <xsl:template match="small"><small><xsl:apply-templates/></small></xsl:template>
  <xsl:template match="br"><br/></xsl:template>

  <xsl:template match="table">
    <table border="1">
      <xsl:if test="@title != ''">
        <caption data-text="title"><xsl:value-of select="@title"/></caption>
      </xsl:if>
      <tbody><xsl:apply-templates/></tbody>
    </table>
  </xsl:template>
  <xsl:template match="tr"><tr><xsl:apply-templates/></tr></xsl:template>
  <xsl:template match="td"><td><xsl:apply-templates/></td></xsl:template>
  <xsl:template match="table[@align]/tr/td">
    <xsl:variable name="letter"
                  select="substring(../../@align, count(preceding-sibling::td) + 1, 1)"/>
    <td>
      <xsl:choose>
        <xsl:when test="$letter = 'L'"><xsl:attribute name="align">left</xsl:attribute></xsl:when>
        <xsl:when test="$letter = 'C'"><xsl:attribute name="align">center</xsl:attribute></xsl:when>
        <xsl:when test="$letter = 'R'"><xsl:attribute name="align">right</xsl:attribute></xsl:when>
      </xsl:choose>
      <xsl:apply-templates/>
    </td>
  </xsl:template>

  <xsl:template match="fieldset">
    <div style="border:1px solid #888;padding:2px">
      <xsl:if test="@title != ''">
        <div data-text="title"><xsl:value-of select="@title"/></div>
      </xsl:if>
      <xsl:apply-templates/>
    </div>
  </xsl:template>
  <xsl:template match="select">
    <select multiple="" size="{count(.//option) + count(.//optgroup)}"><xsl:apply-templates/></select>
  </xsl:template>
  <xsl:template match="optgroup"><optgroup label="{@title}"><xsl:apply-templates/></optgroup></xsl:template>
  <xsl:template match="option"><option><xsl:apply-templates/></option></xsl:template>

  <xsl:template match="input"><input readonly="" value="{@value}"/></xsl:template>
  <xsl:template match="img">
    <img>
      <xsl:attribute name="alt">
        <xsl:choose>
          <xsl:when test="normalize-space(@alt) != ''"><xsl:value-of select="@alt"/></xsl:when>
          <xsl:when test="normalize-space(@src) != ''"><xsl:value-of select="@src"/></xsl:when>
          <xsl:otherwise>image</xsl:otherwise>
        </xsl:choose>
      </xsl:attribute>
    </img>
  </xsl:template>
  <xsl:template match="do">
    <input type="button"><xsl:attribute name="value"><xsl:call-template name="label"/></xsl:attribute></input>
  </xsl:template>
  <xsl:template match="card/do">
    <div contenteditable="false" style="margin:2px">
      <span contenteditable="true" data-text="label" style="border:2px outset #aaa;padding:2px">
        <xsl:call-template name="label"/>
      </span>
    </div>
  </xsl:template>
  <xsl:template name="label">
    <xsl:choose>
      <xsl:when test="normalize-space(@label) != ''"><xsl:value-of select="@label"/></xsl:when>
      <xsl:when test="normalize-space(@type) != ''"><xsl:value-of select="@type"/></xsl:when>
      <xsl:otherwise>do</xsl:otherwise>
    </xsl:choose>
  </xsl:template>
  <xsl:template match="a | anchor">
    <a style="color:#0000cc;border-bottom:1px solid #0000cc"><xsl:apply-templates/></a>
  </xsl:template>

  <xsl:template match="head | template | access | meta | onevent | timer | go | prev | refresh | noop |
                       setvar | postfield"/>
</xsl:stylesheet>
