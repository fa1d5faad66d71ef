#version 110
// A blur along one direction: blurstep.xy is one step in texture
// coordinates, and nine taps of binomial weights reach four steps each way.
// A zero step samples one texel nine times and copies it.
uniform sampler2D Texture0;
uniform vec4 blurstep;

void main() {
    vec2 uv = gl_TexCoord[0].st;
    vec2 d = blurstep.xy;
    vec4 sum = texture2D(Texture0, uv) * 0.2734375;
    sum += (texture2D(Texture0, uv + d) + texture2D(Texture0, uv - d)) * 0.21875;
    sum += (texture2D(Texture0, uv + 2.0 * d) + texture2D(Texture0, uv - 2.0 * d)) * 0.109375;
    sum += (texture2D(Texture0, uv + 3.0 * d) + texture2D(Texture0, uv - 3.0 * d)) * 0.03125;
    sum += (texture2D(Texture0, uv + 4.0 * d) + texture2D(Texture0, uv - 4.0 * d)) * 0.00390625;
    gl_FragColor = sum;
}
