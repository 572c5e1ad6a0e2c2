#include "render/Shaders.h"

namespace VX::Shaders
{

// Colours are lit as squares and shown as square roots, which is close to sRGB and cheap on every pixel.

const std::string_view backgroundVertex = R"(
out float height;
void main()
{
    vec2 corner = vec2(gl_VertexID == 1 ? 3.0 : -1.0, gl_VertexID == 2 ? 3.0 : -1.0);
    height = corner.y * 0.5 + 0.5;
    gl_Position = vec4(corner, 0.0, 1.0);
}
)";

const std::string_view backgroundFragment = R"(
uniform vec3 top;
uniform vec3 bottom;
in float height;
out vec4 result;
void main()
{
    result = vec4(mix(bottom, top, height), 1.0);
}
)";

const std::string_view meshVertex = R"(
layout(location = 0) in vec3 position;
uniform mat4 toClip;
#ifdef FLAT
uniform mat4 toCamera;
out vec3 place;
#else
layout(location = 1) in vec2 octahedral;
uniform mat3 normalToCamera;
out vec3 normal;
#endif
#ifdef VERTEX_COLORS
layout(location = 2) in vec4 vertexColor;
out vec3 tint;
#endif
#ifdef SELECTED_POINTS
layout(location = 3) in float mark;
out float marked;
#endif
void main()
{
    gl_Position = toClip * vec4(position, 1.0);
#ifdef SELECTED_POINTS
    marked = mark;
#endif
#ifdef FLAT
    place = (toCamera * vec4(position, 1.0)).xyz;
#else
    vec3 n = vec3(octahedral, 1.0 - abs(octahedral.x) - abs(octahedral.y));
    float fold = max(-n.z, 0.0);
    n.x += n.x >= 0.0 ? -fold : fold;
    n.y += n.y >= 0.0 ? -fold : fold;
    normal = normalToCamera * n;
#endif
#ifdef VERTEX_COLORS
    tint = vertexColor.rgb;
#endif
}
)";

const std::string_view meshFragment = R"(
uniform vec4 viewRay;
uniform vec3 color;
uniform vec4 highlight;
uniform float opacity;
uniform int firstTriangle;
#ifdef FLAT
in vec3 place;
#else
in vec3 normal;
#endif
#ifdef VERTEX_COLORS
in vec3 tint;
#endif
#ifdef FACE_COLORS
uniform samplerBuffer faceColors;
#endif
#ifdef SELECTED_FACES
uniform usamplerBuffer selectedFaces;
#endif
#ifdef SELECTED_POINTS
in float marked;
#endif
#if defined(SELECTED_FACES) || defined(SELECTED_POINTS)
uniform vec3 selectionColor;

bool isSelected()
{
#ifdef SELECTED_FACES
    int face = gl_PrimitiveID + firstTriangle;
    return (texelFetch(selectedFaces, face >> 5).r >> uint(face & 31) & 1u) != 0u;
#else
    return marked > 0.99;
#endif
}
#endif
#ifdef WIRE
uniform samplerBuffer points;
uniform usamplerBuffer corners;
uniform mat4 toClip;
uniform vec2 halfViewport;
uniform float halfWireWidth;

// In pixels from this fragment, times w: so that a corner behind the eye does no harm.
vec3 cornerAt(int i)
{
    vec4 p = toClip * vec4(texelFetch(points, int(texelFetch(corners, i).r)).xyz, 1.0);
    return vec3((p.xy + p.w) * halfViewport - p.w * gl_FragCoord.xy, p.w);
}

float distanceTo(vec3 a, vec3 b)
{
    vec3 line = cross(a, b);
    return abs(line.z) / max(length(line.xy), 1e-30);
}

// How much of the fragment a side of its triangle covers.
float wire()
{
    int first = 3 * (gl_PrimitiveID + firstTriangle);
    vec3 a = cornerAt(first);
    vec3 b = cornerAt(first + 1);
    vec3 c = cornerAt(first + 2);
    vec3 apart = vec3(distanceTo(a, b), distanceTo(b, c), distanceTo(c, a));
    float nearest = min(apart.x, min(apart.y, apart.z));
    // The three distances add up to about the height of the triangle: where it is a few pixels only, sides fade.
    float room = smoothstep(2.0, 9.0, apart.x + apart.y + apart.z);
    return clamp(halfWireWidth + 0.5 - nearest, 0.0, 1.0) * mix(0.15, 0.75, room);
}
#endif
out vec4 result;

const vec3 keyLight = vec3(-0.4201, 0.5001, 0.7572);
const vec3 fillLight = vec3(0.7592, -0.1687, 0.6286);

void main()
{
    vec3 base = color;
#ifdef VERTEX_COLORS
    base *= tint;
#endif
#ifdef FACE_COLORS
    base *= texelFetch(faceColors, gl_PrimitiveID + firstTriangle).rgb;
#endif
    base = mix(base * base, highlight.rgb, highlight.a);
    float glow = highlight.a;

    vec3 v = normalize(vec3(-(gl_FragCoord.xy * viewRay.xy + viewRay.zw), 1.0));
#ifdef FLAT
    vec3 n = normalize(cross(dFdx(place), dFdy(place)));
#else
    vec3 n = normalize(normal);
    if (!gl_FrontFacing && dot(n, v) < 0.0)
        n = -n;
#endif
    float gloss = 0.10;
    if (!gl_FrontFacing)
    {
        // The inside of a surface: brownish and dull, so that it is not taken for the outside.
        base = mix(base, vec3(0.22, 0.13, 0.09), 0.75);
        gloss = 0.0;
    }
#if defined(SELECTED_FACES) || defined(SELECTED_POINTS)
    if (isSelected())
    {
        base = mix(base, selectionColor * selectionColor, 0.85);
        glow = 0.0;
    }
#endif

    // The key light reaches a little around the form, so that what turns away from it keeps its shape.
    float key = max(dot(n, keyLight) * 0.8 + 0.2, 0.0);
    float fill = max(dot(n, fillLight), 0.0);
    float light = 0.80 * key + 0.14 * fill + 0.07 + 0.04 * n.y;
    float shine = max(dot(n, normalize(keyLight + v)), 0.0);
    shine *= shine;
    shine *= shine;
    shine *= shine;
    shine *= shine;
    shine *= shine;
    float rim = 1.0 - max(dot(n, v), 0.0);
    vec3 lit = base * light + gloss * shine + highlight.rgb * (glow * rim * rim);
    result = vec4(sqrt(lit), opacity);
#ifdef WIRE
    result.rgb = mix(result.rgb, vec3(0.07, 0.08, 0.10), wire());
#endif
}
)";

const std::string_view lineVertex = R"(
uniform samplerBuffer points;
uniform usamplerBuffer segments;
uniform mat4 toClip;
uniform vec2 halfViewport;
uniform float halfWidth;
uniform float towardsViewer;
noperspective out float across;

void main()
{
    uvec2 ends = texelFetch(segments, gl_VertexID / 6).xy;
    vec4 a = toClip * vec4(texelFetch(points, int(ends.x)).xyz, 1.0);
    vec4 b = toClip * vec4(texelFetch(points, int(ends.y)).xyz, 1.0);

    // What lies in front of the near plane is cut off here: behind the eye the direction on the screen turns around.
    float aIn = a.z + a.w;
    float bIn = b.z + b.w;
    if (aIn < 0.0 && bIn < 0.0)
    {
        gl_Position = vec4(0.0, 0.0, 2.0, 1.0);
        across = 0.0;
        return;
    }
    if (aIn < 0.0)
        a = mix(a, b, aIn / (aIn - bIn));
    else if (bIn < 0.0)
        b = mix(b, a, bIn / (bIn - aIn));

    vec2 along = (b.xy / b.w - a.xy / a.w) * halfViewport;
    along = dot(along, along) > 1e-12 ? normalize(along) : vec2(1.0, 0.0);
    int corner = gl_VertexID % 6;
    bool atEnd = corner == 1 || corner == 3 || corner == 4;
    float side = corner == 0 || corner == 1 || corner == 3 ? -1.0 : 1.0;
    float reach = halfWidth + 0.5;
    vec2 offset = (vec2(-along.y, along.x) * side + along * (atEnd ? 0.5 : -0.5)) * reach;
    vec4 p = atEnd ? b : a;
    p.xy += offset / halfViewport * p.w;
    p.z -= towardsViewer * p.w;
    across = side * reach;
    gl_Position = p;
}
)";

const std::string_view lineFragment = R"(
uniform vec3 color;
uniform float opacity;
uniform float halfWidth;
noperspective in float across;
out vec4 result;
void main()
{
    result = vec4(color, opacity * clamp(halfWidth + 0.5 - abs(across), 0.0, 1.0));
}
)";

const std::string_view pointVertex = R"(
layout(location = 0) in vec3 position;
uniform mat4 toClip;
uniform float size;
uniform vec3 color;
uniform vec4 highlight;
flat out vec3 shown;
#ifdef NORMALS
layout(location = 1) in vec2 octahedral;
uniform mat3 normalToCamera;
#endif
#ifdef VERTEX_COLORS
layout(location = 2) in vec4 vertexColor;
#endif
void main()
{
    gl_Position = toClip * vec4(position, 1.0);
    gl_PointSize = size;
    vec3 base = color;
#ifdef VERTEX_COLORS
    base *= vertexColor.rgb;
#endif
    base = mix(base * base, highlight.rgb, highlight.a);
#ifdef NORMALS
    vec3 n = vec3(octahedral, 1.0 - abs(octahedral.x) - abs(octahedral.y));
    float fold = max(-n.z, 0.0);
    n.x += n.x >= 0.0 ? -fold : fold;
    n.y += n.y >= 0.0 ? -fold : fold;
    n = normalize(normalToCamera * n);
    base *= 0.25 + 0.75 * abs(dot(n, vec3(-0.4201, 0.5001, 0.7572)));
#endif
    shown = sqrt(base);
}
)";

const std::string_view pointFragment = R"(
flat in vec3 shown;
uniform float opacity;
out vec4 result;
void main()
{
    vec2 fromMiddle = gl_PointCoord - 0.5;
    if (dot(fromMiddle, fromMiddle) > 0.25)
        discard;
    result = vec4(shown, opacity);
}
)";

} // namespace VX::Shaders
