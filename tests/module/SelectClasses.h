#pragma once

#include <IFC2X3/IFC2X3.h>
#include <IFC2X3/IfcVectorOrDirection.h>

#include <string>
#include <vector>

template <class... Select>
struct ClassList {};

/// Every select class of the schema.
using SelectClasses =
    ClassList<IFC2X3::IfcActorSelect, IFC2X3::IfcAppliedValueSelect, IFC2X3::IfcAxis2Placement,
              IFC2X3::IfcBooleanOperand, IFC2X3::IfcCharacterStyleSelect, IFC2X3::IfcClassificationNotationSelect,
              IFC2X3::IfcColour, IFC2X3::IfcColourOrFactor, IFC2X3::IfcConditionCriterionSelect, IFC2X3::IfcCsgSelect,
              IFC2X3::IfcCurveFontOrScaledCurveFontSelect, IFC2X3::IfcCurveOrEdgeCurve, IFC2X3::IfcCurveStyleFontSelect,
              IFC2X3::IfcDateTimeSelect, IFC2X3::IfcDefinedSymbolSelect, IFC2X3::IfcDerivedMeasureValue,
              IFC2X3::IfcDocumentSelect, IFC2X3::IfcDraughtingCalloutElement, IFC2X3::IfcFillAreaStyleTileShapeSelect,
              IFC2X3::IfcFillStyleSelect, IFC2X3::IfcGeometricSetSelect, IFC2X3::IfcHatchLineDistanceSelect,
              IFC2X3::IfcLayeredItem, IFC2X3::IfcLibrarySelect, IFC2X3::IfcLightDistributionDataSourceSelect,
              IFC2X3::IfcMaterialSelect, IFC2X3::IfcMeasureValue, IFC2X3::IfcMetricValueSelect,
              IFC2X3::IfcObjectReferenceSelect, IFC2X3::IfcOrientationSelect, IFC2X3::IfcPointOrVertexPoint,
              IFC2X3::IfcPresentationStyleSelect, IFC2X3::IfcShell, IFC2X3::IfcSimpleValue, IFC2X3::IfcSizeSelect,
              IFC2X3::IfcSpecularHighlightSelect, IFC2X3::IfcStructuralActivityAssignmentSelect,
              IFC2X3::IfcSurfaceOrFaceSurface, IFC2X3::IfcSurfaceStyleElementSelect, IFC2X3::IfcSymbolStyleSelect,
              IFC2X3::IfcTextFontSelect, IFC2X3::IfcTextStyleSelect, IFC2X3::IfcTrimmingSelect, IFC2X3::IfcUnit,
              IFC2X3::IfcValue, IFC2X3::IfcVectorOrDirection>;

/// Names of the alternatives of a select by their codes, found by asking it for every name that the schema's text has;
/// empty names stand where no name gave the code.
std::vector<std::string> alternativesOf(const KP_SDAI::KpIfcSelect& select);
