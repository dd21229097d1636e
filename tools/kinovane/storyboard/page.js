// SPDX-License-Identifier: Apache-2.0
'use strict';
const scroll = document.getElementById('scroll');
const track = document.getElementById('track');

// The key frames of the timeline are those of the cards, so that the page holds each picture once.
for (const link of document.querySelectorAll('.lane.shots a')) {
  const frame = document.querySelector(link.hash + ' .frame');
  if (!frame) continue;
  const picture = document.createElement('img');
  picture.alt = '';
  picture.loading = 'lazy';
  picture.src = frame.src;
  link.prepend(picture);
}

// Zooms, and keeps the time in the middle where it is.
function zoom(width) {
  const visible = scroll.clientWidth;
  const middle = (scroll.scrollLeft + visible / 2) / track.offsetWidth;
  track.style.minWidth = Math.min(width, 4e6) + 'px';
  scroll.scrollLeft = middle * track.offsetWidth - visible / 2;
}
if (track) {
  const actions = {
    whole: () => zoom(0),
    out: () => zoom(track.offsetWidth / 1.6),
    in: () => zoom(track.offsetWidth * 1.6),
  };
  const buttons = document.querySelector('.zoom');
  buttons.hidden = false;
  buttons.addEventListener('click', event => {
    const action = actions[event.target.dataset.zoom];
    if (action) action();
  });
}

// A clip plays when it is opened, and only one at a time.
document.addEventListener('toggle', event => {
  const clip = event.target;
  if (!clip.matches('.clip')) return;
  const video = clip.querySelector('video');
  if (!clip.open) {
    video.pause();
    return;
  }
  for (const other of document.querySelectorAll('.clip[open]')) if (other !== clip) other.open = false;
  const frame = clip.parentElement.querySelector('.frame');
  if (frame) video.poster = frame.src;
  video.play().catch(() => {});
}, true);
document.addEventListener('error', event => {
  if (event.target instanceof HTMLVideoElement) event.target.nextElementSibling.hidden = false;
}, true);
