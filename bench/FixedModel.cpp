#include "FixedModel.h"

#include <fmt/format.h>

#include <iterator>

namespace {

constexpr const char* kBegin = R"(ISO-10303-21;
HEADER;
FILE_DESCRIPTION(('ViewDefinition [CoordinationView]'),'2;1');
FILE_NAME('walls.ifc','2024-01-01T00:00:00',(''),(''),'','','');
FILE_SCHEMA(('IFC2X3'));
ENDSEC;
DATA;
#1=IFCPERSON($,'Doe',$,$,$,$,$,$);
#2=IFCORGANIZATION($,'Office',$,$,$);
#3=IFCPERSONANDORGANIZATION(#1,#2,$);
#4=IFCAPPLICATION(#2,'1','Walls','W');
#5=IFCOWNERHISTORY(#3,#4,$,.ADDED.,$,$,$,1700000000);
#6=IFCDIRECTION((0.,0.,1.));
#7=IFCDIRECTION((1.,0.,0.));
#8=IFCCARTESIANPOINT((0.,0.,0.));
#9=IFCAXIS2PLACEMENT3D(#8,#6,#7);
#10=IFCLOCALPLACEMENT($,#9);
#11=IFCBUILDINGSTOREY('2Storey000000000000000',#5,'Ground floor',$,$,#10,$,$,.ELEMENT.,0.);
)";

/// {0}: the name of the first record of the wall; {1}: where it stands; {2}: its number.
constexpr const char* kWall = R"(#{0}=IFCCARTESIANPOINT(({1}.25,-1.5,2.75E-1));
#{3}=IFCAXIS2PLACEMENT3D(#{0},#6,#7);
#{4}=IFCLOCALPLACEMENT(#10,#{3});
#{5}=IFCCARTESIANPOINT(({1}.,0.,0.));
#{6}=IFCCARTESIANPOINT(({1}.,4.123456789,0.));
#{7}=IFCCARTESIANPOINT(({1}.,4.123456789,2.5));
#{8}=IFCCARTESIANPOINT(({1}.,0.,2.5));
#{9}=IFCPOLYLOOP((#{5},#{6},#{7},#{8}));
#{10}=IFCFACEOUTERBOUND(#{9},.T.);
#{11}=IFCFACE((#{10}));
#{12}=IFCPOLYLOOP((#{8},#{7},#{6}));
#{13}=IFCFACEOUTERBOUND(#{12},.T.);
#{14}=IFCFACE((#{13}));
#{15}=IFCCLOSEDSHELL((#{11},#{14}));
#{16}=IFCFACETEDBREP(#{15});
#{17}=IFCSHAPEREPRESENTATION($,'Body','Brep',(#{16}));
#{18}=IFCPRODUCTDEFINITIONSHAPE($,$,(#{17}));
#{19}=IFCWALLSTANDARDCASE('1Wall{2:017}',#5,'Wall {2}',$,'Standard',#{4},#{18},'{2}');
#{20}=IFCPROPERTYSINGLEVALUE('Reference',$,IFCLABEL('W-{2}'),$);
#{21}=IFCPROPERTYSINGLEVALUE('IsExternal',$,IFCBOOLEAN(.T.),$);
#{22}=IFCPROPERTYSINGLEVALUE('ThermalTransmittance',$,IFCREAL(0.24),$);
#{23}=IFCPROPERTYSINGLEVALUE('Status','of the wall',IFCIDENTIFIER('New'),$);
#{24}=IFCPROPERTYSET('1Pset{2:017}',#5,'Pset_WallCommon',$,(#{20},#{21},#{22},#{23}));
#{25}=IFCRELDEFINESBYPROPERTIES('1Defs{2:017}',#5,$,$,(#{19}),#{24});
#{26}=IFCCOLOURRGB($,0.5,0.25,{2}.E-9);
#{27}=IFCRELCONTAINEDINSPATIALSTRUCTURE('1Cont{2:017}',#5,$,$,(#{19}),#11);
)";
constexpr int kFirst = 12;
constexpr int kPerWall = 26;

} // namespace

std::string fixedModel(int walls) {
    std::string text = kBegin;
    for (int wall = 0; wall < walls; ++wall) {
        const int n = kFirst + wall * kPerWall;
        fmt::format_to(std::back_inserter(text), fmt::runtime(kWall), n, wall % 1000, wall, n + 1, n + 2, n + 3, n + 4,
                       n + 5, n + 6, n + 7, n + 8, n + 9, n + 10, n + 11, n + 12, n + 13, n + 14, n + 15, n + 16,
                       n + 17, n + 18, n + 19, n + 20, n + 21, n + 22, n + 23, n + 24, n + 25);
    }
    return text + "ENDSEC;\nEND-ISO-10303-21;\n";
}
