'use strict';
// The page's texts in the language that the browser asks for: traditional Chinese, else English.
(function (velmorantMap) {
    const TEXTS = {
        map: ['Map of the routes', '路線地圖'],
        zoomIn: ['Zoom in', '放大'],
        zoomOut: ['Zoom out', '縮小'],
        fitAll: ['Show all routes', '顯示全部路線'],
        fitActive: ['Show this recording', '顯示此錄影'],
        follow: ['Follow the car', '跟隨車輛'],
        layers: ['Layers', '圖層'],
        wholeWindow: ['Map in the whole window', '地圖放大至整個視窗'],
        speedColours: ['Speed colours', '速度顏色'],
        names: ['Place names', '地名'],
        grid: ['Grid', '經緯線'],
        tiles: ['Street map', '街道圖'],
        glide: ['Smooth car', '車輛平滑移動'],
        baseOnly: ['Built-in map, no network', '內建地圖，不連網路'],
        tilesFailing: ['Street map not answering', '街道圖沒有回應'],
        tilesWaiting: ['Waiting for the street map', '等待街道圖'],
        noFix: ['No GPS fix', '無 GPS 定位'],
        notReachable: ['The player cannot seek to this place: the street runs exactly north-south or east-west, or another route lies over it.',
            '無法跳至此處：道路正好為南北或東西向，或被其他路線覆蓋。'],
        recording: ['Recording', '錄影'],
        locked: ['locked', '保護'],
        normal: ['normal', '一般'],
        fixLost: ['no fix', '無定位'],
        utc: ['UTC', '世界時'],
        camera: ['camera clock', '行車記錄器時間'],
        creation: ['file date', '檔案時間'],
        speedLegend: ['Speed', '速度'],
    };

    class Texts {
        constructor(language) {
            this.use(language);
        }

        use(language) {
            this.chinese = /^zh\b/i.test(language || '');
            this.language = this.chinese ? 'zh-Hant' : 'en';
        }

        get(name) {
            return TEXTS[name][this.chinese ? 1 : 0];
        }
    }

    Texts.TABLE = TEXTS;
    velmorantMap.Texts = Texts;
})(window.velmorantMap);
