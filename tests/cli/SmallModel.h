#pragma once

#include "Runner.h"

#include <string>

/// A file without problems that has attributes of every kind.
inline std::string smallModel() {
    return stepFile(
        "#1=IFCPERSON('007','Doe',$,('A','B'),$,$,(#3),$);\n"
        "#2=IFCORGANIZATION($,'Works \\X\\E9 ''s',$,$,$);\n"
        "#3=IFCACTORROLE(.ARCHITECT.,$,$);\n"
        "#4=IFCCARTESIANPOINT((0.,1.5));\n"
        "#5=IFCSIUNIT(*,.LENGTHUNIT.,.MILLI.,.METRE.);\n"
        "#6=IFCPROPERTYSINGLEVALUE('P',$,IFCLABEL('x'),#5);\n"
        "#7=IFCPROPERTYLISTVALUE('L',$,(IFCINTEGER(7),IFCBOOLEAN(.F.),IFCCOMPLEXNUMBER((1.,0.5))),$);\n"
        "#8=IFCDIMENSIONALEXPONENTS(1,0,0,0,0,0,0);\n"
        "#9=IFCPRESENTATIONLAYERWITHSTYLE('a',$,(#4),$,.T.,.F.,.U.,(#18));\n"
        "#10=IFCSITE('23emzg5$r6fA3IIhCrx3ZR',#11,'Site',$,$,$,$,$,.ELEMENT.,(47,30,15,250000),$,440.,$,$);\n"
        "#11=IFCOWNERHISTORY(#12,#13,$,.ADDED.,$,$,$,0);\n"
        "#12=IFCPERSONANDORGANIZATION(#1,#2,$);\n"
        "#13=IFCAPPLICATION(#2,'1','Tool','T');\n"
        "#14=IFCPIXELTEXTURE(.T.,.F.,.TEXTURE.,$,1,2,3,(\"0FF\",\"000000001\"));\n"
        "#15=IFCPOLYLINE((#4,#16));\n"
        "#16=IFCCARTESIANPOINT((1.,2.,3.E-07));\n"
        "#17=IFCDOORSTYLE('0xGO74I1L2sOBnKbLTH2I2',#11,$,$,$,$,$,$,.NOTDEFINED.,.NOTDEFINED.,.T.,.F.);\n"
        "#18=IFCCURVESTYLE('thin',$,$,$);\n"
        "#19=IFCPRESENTATIONSTYLEASSIGNMENT((IFCNULLSTYLE(.NULL.),#18));");
}
